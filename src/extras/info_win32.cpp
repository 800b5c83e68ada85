// The information screens: the gallery CWNDINFO and its picture buttons CWNDBUTTONINFO, and the orchid
// information text CWNDPREVIEWINFO.
#include "extras/info_win32.h"

#include <cstdio>
#include <cstring>
#include <new>

#include "app/app_state.h"
#include "app/app_win32.h"
#include "app/art_ids.h"
#include "app/theme.h"
#include "controls/animated_button_win32.h"
#include "controls/control_messages.h"
#include "controls/controls_win32.h"
#include "extras/gallery_rules.h"
#include "extras/info_text.h"
#include "extras/music_win32.h"
#include "gfx/bmp_reader.h"
#include "gfx/dib.h"
#include "gfx/thumbnail_frame_win32.h"
#include "gfx/file_list.h"
#include "gfx/image_object_win32.h"
#include "puzzle/picture.h"
#include "setup/picture_fit.h"
#include "setup/picture_window_win32.h"

int32_t g_infoPage = 0;

namespace {

constexpr DWORD kScreenStyle = WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN | WS_MAXIMIZE | WS_DLGFRAME;
constexpr int32_t kButtonFrames = 10;  // animated buttons: one row of ten frames
constexpr int32_t kHoverFrameWidth = 2;
// The information text's font. The display's default font, a bold face 16 pixels high, is too tall for
// lines 13 pixels apart and too wide for the 600-pixel page: the first line alone runs onto the frame.
// At 14 pixels every line keeps to the page.
constexpr int32_t kInfoFontHeight = 14;

int32_t ScreenWidth() { return g_screenWidth > 0 ? g_screenWidth : GetSystemMetrics(SM_CXSCREEN); }
int32_t ScreenHeight() { return g_screenHeight > 0 ? g_screenHeight : GetSystemMetrics(SM_CYSCREEN); }

// A full-screen popup whose client area is the screen, with or without a window manager to maximise it.
HWND MakeScreen(const char* className, HWND owner) {
    RECT frame = {0, 0, ScreenWidth(), ScreenHeight()};
    AdjustWindowRectEx(&frame, kScreenStyle, FALSE, 0);
    return CreateWindowExA(0, className, "", kScreenStyle, frame.left, frame.top, frame.right - frame.left,
                           frame.bottom - frame.top, owner, nullptr, GetModuleHandleA(nullptr), nullptr);
}

HWND MakeChild(HWND parent, const char* className, PanelPlace place, POINT panelAt, int id, bool visible = true) {
    DWORD style = WS_CHILD | WS_CLIPSIBLINGS | (visible ? WS_VISIBLE : 0);
    return CreateWindowExA(0, className, "", style, panelAt.x + place.x, panelAt.y + place.y, kPanelButtonSide,
                           kPanelButtonSide, parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                           GetModuleHandleA(nullptr), nullptr);
}

HWND MakeAnimatedButton(HWND parent, const ImageObject* strip, PanelPlace place, POINT panelAt, int id,
                        bool visible = true) {
    HWND button = MakeChild(parent, "CQMANIM", place, panelAt, id, visible);
    if (!button) return nullptr;
    SendMessageA(button, PM_ANIM_SETROWS, 0, 1);
    SendMessageA(button, PM_ANIM_SETCOLUMNS, 0, kButtonFrames);
    SendMessageA(button, PM_ANIM_SETFRAME, 0, kButtonRestFrame);
    SendMessageA(button, PM_SETIMAGE, 0, reinterpret_cast<LPARAM>(ImageObject_Dib(strip)));
    return button;
}

HWND MakeCommandButton(HWND parent, const ImageObject* strip, PanelPlace place, POINT panelAt, int id) {
    HWND button = MakeChild(parent, "CQMCOMMAND", place, panelAt, id);
    if (button) SendMessageA(button, PM_SETIMAGE, 0, reinterpret_cast<LPARAM>(ImageObject_Dib(strip)));
    return button;
}

void PaintFromBackdrop(HDC dc, const RECT& area, const ImageObject* backdrop, bool hasBackdrop, POINT origin) {
    int32_t width = area.right - area.left, height = area.bottom - area.top;
    if (width < 1 || height < 1) return;
    if (!hasBackdrop) {
        BitBlt(dc, area.left, area.top, width, height, nullptr, 0, 0, BLACKNESS);
        return;
    }
    BitBlt(dc, area.left, area.top, width, height, ImageObject_Dc(backdrop), area.left + origin.x,
           area.top + origin.y, SRCCOPY);
}

// Sinks a socket into the backdrop behind a button of width x height at place on the panel.
void DrawButtonSocket(ImageObject* backdrop, POINT panelAt, PanelPlace place, int32_t width, int32_t height) {
    int32_t x = panelAt.x + place.x - kButtonSocketMargin, y = panelAt.y + place.y - kButtonSocketMargin;
    int32_t w = width + 2 * kButtonSocketMargin, h = height + 2 * kButtonSocketMargin;
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = w;
    info.bmiHeader.biHeight = -h;  // top-down, as the shading counts its rows
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    HBITMAP section = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    if (!section) return;
    HDC target = ImageObject_Dc(backdrop);
    HDC dc = CreateCompatibleDC(target);
    if (dc) {
        HGDIOBJ old = SelectObject(dc, section);
        BitBlt(dc, 0, 0, w, h, target, x, y, SRCCOPY);
        GdiFlush();
        ShadeButtonSocket(static_cast<uint8_t*>(bits), w, h, 4 * w);
        BitBlt(target, x, y, w, h, dc, 0, 0, SRCCOPY);
        SelectObject(dc, old);
        DeleteDC(dc);
    }
    DeleteObject(section);
}

// Enabled first, so that the system can hand activation back to the owner.
void CloseScreen(HWND screen) {
    HWND owner = GetWindow(screen, GW_OWNER);
    if (owner) {
        EnableWindow(owner, TRUE);
        SetForegroundWindow(owner);
    }
    DestroyWindow(screen);
}

void EnableOwner(HWND screen) {
    HWND owner = GetWindow(screen, GW_OWNER);
    if (owner) EnableWindow(owner, TRUE);
}

void DisableOwner(HWND screen) {
    HWND owner = GetWindow(screen, GW_OWNER);
    if (owner) EnableWindow(owner, FALSE);
}

// ==== The gallery ====

enum GalleryButton { GALLERY_CLOSE, GALLERY_INFO, GALLERY_NEXT, GALLERY_PREVIOUS, GALLERY_BUTTON_COUNT };

struct GalleryState {
    HWND hwnd;
    ImageObject backdrop;  // screen-sized: felt and the gallery panel
    bool hasBackdrop;
    POINT panelAt;         // the panel's top-left corner on the screen
    ImageObject strips[GALLERY_BUTTON_COUNT];
    HWND buttons[GALLERY_BUTTON_COUNT];
    HWND pictures[kGalleryPageSize];
    FileNameList list;     // "Image\*.bmp", in the order the folder gives
    int32_t first;         // the picture on the first button
};

struct PictureButtonState {
    HWND hwnd;
    uint8_t* thumbnail;        // packed DIB, or null: the button shows its empty well and ignores clicks
    bool hover;                // the pointer is over the button
    bool pressed;              // the left button went down on the thumbnail and is held
    const GalleryState* gallery;  // for the backdrop behind the thumbnail; not owned
    POINT origin;              // the button's place on the gallery
};

GalleryState* GalleryOf(HWND hwnd) { return reinterpret_cast<GalleryState*>(GetWindowLongPtrA(hwnd, GWLP_USERDATA)); }
PictureButtonState* PictureButtonOf(HWND hwnd) {
    return reinterpret_cast<PictureButtonState*>(GetWindowLongPtrA(hwnd, GWLP_USERDATA));
}

// The picture fitted into the thumbnail square, read resampled straight from its file.
uint8_t* ReadThumbnail(const char* path) {
    BmpFileReader reader;
    InitBmpReader(&reader);
    if (!OpenBmp(&reader, path)) return nullptr;
    DibHeader header;
    uint8_t* thumbnail = nullptr;
    if (!reader.compressed && reader.colorCount <= kDibMaxColors && BmpHeader(&reader, &header)) {
        int32_t height = header.biHeight < 0 ? -header.biHeight : header.biHeight;
        PictureFit fit = FitPicture(header.biWidth, height, kGalleryThumbnailSide, kGalleryThumbnailSide);
        int32_t width = fit.width < 1 ? 1 : fit.width, rows = fit.height < 1 ? 1 : fit.height;
        thumbnail = AllocPackedDib(width, rows, header.biBitCount, reader.colorCount);
        bool ok = thumbnail &&
                  (reader.colorCount == 0 || BmpPalette(&reader, 0, reader.colorCount, DibPalette(thumbnail)));
        ok = ok && ReadBmpResampled(&reader, width, rows, DibPixels(thumbnail));
        if (!ok) {
            FreePackedDib(thumbnail);
            thumbnail = nullptr;
        }
    }
    CloseBmp(&reader);
    return thumbnail;
}

bool PicturePath(const GalleryState* s, int32_t picture, char* name, size_t nameSize, char* path, size_t pathSize) {
    FileNameAt(&s->list, picture, true, name, uint32_t(nameSize));
    if (!name[0]) return false;
    int written = std::snprintf(path, pathSize, "%sImage\\%s.bmp", g_appFolder, name);
    return written > 0 && size_t(written) < pathSize;
}

// Each picture button shows the thumbnail of picture first + k, or nothing past the end of the list.
void FillPictureButtons(GalleryState* s) {
    for (int32_t k = 0; k < kGalleryPageSize; ++k) {
        int32_t picture = GalleryPictureOnButton(s->first, k, s->list.count);
        uint8_t* thumbnail = nullptr;
        char name[256], path[kPathCapacity + 16];
        if (picture >= 0 && PicturePath(s, picture, name, sizeof name, path, sizeof path))
            thumbnail = ReadThumbnail(path);
        if (s->pictures[k]) SendMessageA(s->pictures[k], PM_SETIMAGE, 0, reinterpret_cast<LPARAM>(thumbnail));
        else FreePackedDib(thumbnail);
    }
}

// The picture's title (string 5000 + the number its name ends in) is drawn on the picture window's
// first paint.
void LoadPictureTitle(const char* name) {
    g_pictureTitle[0] = 0;
    int32_t number = PictureNumberOfPath(name);
    if (number >= 0) LoadStringA(GetModuleHandleA(nullptr), UINT(kStrPictureTitle + number), g_pictureTitle,
                                 kPictureTitleCapacity);
    g_pictureTitlePending = true;
}

void OpenGalleryPicture(GalleryState* s, int32_t button) {
    int32_t picture = GalleryPictureOnButton(s->first, button, s->list.count);
    char name[256], path[kPathCapacity + 16];
    if (picture < 0 || !PicturePath(s, picture, name, sizeof name, path, sizeof path)) return;
    LoadPictureTitle(name);
    OpenPictureWindow(s->hwnd, path, nullptr, path);
}

void TurnGalleryPage(GalleryState* s, int32_t first) {
    if (first == s->first) return;
    s->first = first;
    FillPictureButtons(s);
}

void Gallery_OnClicked(GalleryState* s, HWND control) {
    int id = GetDlgCtrlID(control);
    if (id >= kGalleryFirstPictureId && id < kGalleryFirstPictureId + kGalleryPageSize)
        return OpenGalleryPicture(s, id - kGalleryFirstPictureId);
    switch (id) {
    case kGalleryCloseId: SendMessageA(s->hwnd, WM_CLOSE, 0, 0); return;
    case kGalleryInfoId: OpenInfoText(s->hwnd); return;
    case kGalleryNextId: TurnGalleryPage(s, GalleryNextFirst(s->first, s->list.count)); return;
    case kGalleryPreviousId: TurnGalleryPage(s, GalleryPreviousFirst(s->first)); return;
    }
}

bool IsGalleryButton(const GalleryState* s, HWND control) {
    for (HWND button : s->buttons)
        if (button && button == control) return true;
    return false;
}

void Gallery_OnNotify(GalleryState* s, WPARAM event, HWND control) {
    if (IsGalleryButton(s, control)) {
        AnimatedButtonSound(event);
        AnimatedButtonFeedback(control, event);
    }
    if (event == NOTIFY_CLICKED) Gallery_OnClicked(s, control);
}

void ReadImageList(GalleryState* s) {
    char pattern[kPathCapacity + 16];
    int written = std::snprintf(pattern, sizeof pattern, "%sImage\\*.bmp", g_appFolder);
    if (written <= 0 || size_t(written) >= sizeof pattern || !FillFileNameList(&s->list, pattern))
        FreeFileNameList(&s->list);  // no folder or no picture: an empty gallery
}

void MakeGalleryChildren(GalleryState* s) {
    static const uint32_t kStripIds[GALLERY_BUTTON_COUNT] = {kArtCloseAnimButton, kArtGalleryInfoButton,
                                                              kArtGalleryNextButton, kArtGalleryPreviousButton};
    static const PanelPlace kPlaces[GALLERY_BUTTON_COUNT] = {kGalleryClosePlace, kGalleryInfoPlace,
                                                             kGalleryNextPlace, kGalleryPreviousPlace};
    static const int kIds[GALLERY_BUTTON_COUNT] = {kGalleryCloseId, kGalleryInfoId, kGalleryNextId,
                                                   kGalleryPreviousId};
    // The page arrows only when there is more than one page.
    bool paging = GalleryHasPages(s->list.count);
    for (int i = 0; i < GALLERY_BUTTON_COUNT; ++i) {
        ImageObject_LoadFromPack(&s->strips[i], kStripIds[i]);
        bool visible = paging || (i != GALLERY_NEXT && i != GALLERY_PREVIOUS);
        if (visible && s->hasBackdrop)
            DrawButtonSocket(&s->backdrop, s->panelAt, kPlaces[i], kPanelButtonSide, kPanelButtonSide);
        s->buttons[i] = MakeAnimatedButton(s->hwnd, &s->strips[i], kPlaces[i], s->panelAt, kIds[i], visible);
    }
    for (int32_t k = 0; k < kGalleryPageSize; ++k) {
        PanelPlace well = GalleryWellPlace(k);
        s->pictures[k] = CreateWindowExA(0, kGalleryButtonClass, "", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS,
                                         s->panelAt.x + well.x, s->panelAt.y + well.y, kGalleryWellSide,
                                         kGalleryWellSide, s->hwnd,
                                         reinterpret_cast<HMENU>(static_cast<INT_PTR>(kGalleryFirstPictureId + k)),
                                         GetModuleHandleA(nullptr), nullptr);
    }
}

LRESULT Gallery_OnCreate(HWND hwnd) {
    GalleryState* s = new (std::nothrow) GalleryState();
    if (!s) return -1;
    s->hwnd = hwnd;
    for (ImageObject& strip : s->strips) ImageObject_Init(&strip, false);
    InitFileNameList(&s->list);
    s->hasBackdrop = true;
    if (!ComposeScreenBackdrop(&s->backdrop, kArtGalleryPanel, &s->panelAt)) {
        ImageObject_Destroy(&s->backdrop);
        s->hasBackdrop = false;
    }
    SetWindowLongPtrA(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(s));
    DisableOwner(hwnd);
    ReadImageList(s);
    MakeGalleryChildren(s);
    FillPictureButtons(s);
    return 0;
}

void Gallery_OnPaint(GalleryState* s) {
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(s->hwnd, &paint);
    if (dc) PaintFromBackdrop(dc, paint.rcPaint, &s->backdrop, s->hasBackdrop, POINT{0, 0});
    EndPaint(s->hwnd, &paint);
}

void Gallery_OnPrintClient(GalleryState* s, HDC dc) {
    RECT all = {0, 0, ScreenWidth(), ScreenHeight()};
    PaintFromBackdrop(dc, all, &s->backdrop, s->hasBackdrop, POINT{0, 0});
}

void Gallery_OnKeyDown(GalleryState* s, WPARAM key) {
    if (key == VK_ESCAPE) SendMessageA(s->hwnd, WM_CLOSE, 0, 0);
}

void Gallery_OnDestroy(GalleryState* s) {
    EnableOwner(s->hwnd);
    ResumeMusic();
}

// Last of all, once every child is gone: the pictures the children drew from can go.
void Gallery_OnNcDestroy(GalleryState* s) {
    if (s->hasBackdrop) ImageObject_Destroy(&s->backdrop);
    for (ImageObject& strip : s->strips) ImageObject_Destroy(&strip);
    FreeFileNameList(&s->list);
    SetWindowLongPtrA(s->hwnd, GWLP_USERDATA, 0);
    delete s;
}

LRESULT CALLBACK GalleryProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CREATE) return Gallery_OnCreate(hwnd);
    GalleryState* s = GalleryOf(hwnd);
    if (!s) return DefWindowProcA(hwnd, message, wParam, lParam);
    switch (message) {
    case WM_PAINT: Gallery_OnPaint(s); return 0;
    case WM_PRINTCLIENT: Gallery_OnPrintClient(s, reinterpret_cast<HDC>(wParam)); return 0;
    case WM_ERASEBKGND: return 1;  // the backdrop covers everything
    case PM_NOTIFY: Gallery_OnNotify(s, wParam, reinterpret_cast<HWND>(lParam)); return 0;
    case WM_KEYDOWN: Gallery_OnKeyDown(s, wParam); return 0;
    case WM_CLOSE: CloseScreen(hwnd); return 0;
    case WM_DESTROY: Gallery_OnDestroy(s); return 0;
    case WM_NCDESTROY: Gallery_OnNcDestroy(s); break;
    case PM_GALLERY_GETFIRST: return s->first;
    case PM_GALLERY_GETCOUNT: return s->list.count;
    }
    return DefWindowProcA(hwnd, message, wParam, lParam);
}

// ==== The picture buttons ====

void PictureButton_Paint(const PictureButtonState* b, HDC dc, const RECT& area) {
    int saved = SaveDC(dc);
    ThumbnailPlace at = {};
    if (b->thumbnail) {
        at = CentredThumbnail(b->thumbnail, kGalleryWellSide, kGalleryWellSide);
        ExcludeClipRect(dc, at.x, at.y, at.x + at.width, at.y + at.height);
    }
    if (b->gallery) PaintFromBackdrop(dc, area, &b->gallery->backdrop, b->gallery->hasBackdrop, b->origin);
    RestoreDC(dc, saved);
    if (!b->thumbnail) return;
    DrawPackedDib(dc, at.x, at.y, at.width, at.height, b->thumbnail, 0, 0);
    if (b->hover) PaintThumbnailFrame(dc, at, kHoverFrameWidth, kSelectedTextColor);
}

void PictureButton_OnPaint(PictureButtonState* b) {
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(b->hwnd, &paint);
    if (dc) PictureButton_Paint(b, dc, paint.rcPaint);
    EndPaint(b->hwnd, &paint);
}

void PictureButton_OnPrintClient(PictureButtonState* b, HDC dc) {
    RECT all = {0, 0, kGalleryWellSide, kGalleryWellSide};
    PictureButton_Paint(b, dc, all);
}

LRESULT PictureButton_OnSetImage(PictureButtonState* b, uint8_t* thumbnail) {
    FreePackedDib(b->thumbnail);
    b->thumbnail = thumbnail;
    b->pressed = false;
    InvalidateRect(b->hwnd, nullptr, FALSE);
    return 1;
}

void PictureButton_OnMouseMove(PictureButtonState* b) {
    if (b->hover) return;
    b->hover = true;
    TRACKMOUSEEVENT track = {sizeof track, TME_LEAVE, b->hwnd, 0};
    TrackMouseEvent(&track);
    if (!b->thumbnail) return;
    PlayInterfaceSound(g_hoverSound);
    InvalidateRect(b->hwnd, nullptr, FALSE);
}

void PictureButton_OnMouseLeave(PictureButtonState* b) {
    if (!b->hover) return;
    b->hover = false;
    InvalidateRect(b->hwnd, nullptr, FALSE);
}

void PictureButton_OnLButtonDown(PictureButtonState* b) {
    if (!b->thumbnail) return;
    b->pressed = true;
    SetCapture(b->hwnd);
}

// The gallery may open the picture window from here on: nothing of the button is used after the notice.
void PictureButton_OnLButtonUp(PictureButtonState* b, int x, int y) {
    if (!b->pressed) return;
    HWND hwnd = b->hwnd;
    b->pressed = false;  // before the release, whose WM_CAPTURECHANGED must find the press over
    ReleaseOwnCapture(hwnd);
    bool inside = x >= 0 && x < kGalleryWellSide && y >= 0 && y < kGalleryWellSide;
    if (!inside) return;
    PlayInterfaceSound(g_clickSound);
    NotifyParent(hwnd, NOTIFY_CLICKED);
}

void PictureButton_OnCaptureChanged(PictureButtonState* b, HWND newOwner) {
    if (newOwner != b->hwnd) b->pressed = false;
}

LRESULT PictureButton_OnCreate(HWND hwnd) {
    PictureButtonState* b = new (std::nothrow) PictureButtonState();
    if (!b) return -1;
    b->hwnd = hwnd;
    HWND parent = GetParent(hwnd);
    b->gallery = parent ? GalleryOf(parent) : nullptr;
    RECT r = {};
    GetWindowRect(hwnd, &r);
    MapWindowPoints(HWND_DESKTOP, parent, reinterpret_cast<POINT*>(&r), 2);
    b->origin = POINT{r.left, r.top};
    SetWindowLongPtrA(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(b));
    return 0;
}

void PictureButton_OnDestroy(PictureButtonState* b) {
    HWND hwnd = b->hwnd;
    FreePackedDib(b->thumbnail);
    delete b;
    SetWindowLongPtrA(hwnd, GWLP_USERDATA, 0);
}

LRESULT CALLBACK PictureButtonProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CREATE) return PictureButton_OnCreate(hwnd);
    PictureButtonState* b = PictureButtonOf(hwnd);
    if (!b) return DefWindowProcA(hwnd, message, wParam, lParam);
    switch (message) {
    case WM_PAINT: PictureButton_OnPaint(b); return 0;
    case WM_PRINTCLIENT: PictureButton_OnPrintClient(b, reinterpret_cast<HDC>(wParam)); return 0;
    case WM_ERASEBKGND: return 1;
    case PM_GETIMAGE: return reinterpret_cast<LRESULT>(b->thumbnail);
    case PM_SETIMAGE: return PictureButton_OnSetImage(b, reinterpret_cast<uint8_t*>(lParam));
    case PM_PICTUREBUTTON_GETHOVER: return b->hover ? 1 : 0;
    case WM_MOUSEMOVE: PictureButton_OnMouseMove(b); return 0;
    case WM_MOUSELEAVE: PictureButton_OnMouseLeave(b); return 0;
    case WM_LBUTTONDOWN: PictureButton_OnLButtonDown(b); return 0;
    case WM_LBUTTONUP: PictureButton_OnLButtonUp(b, MouseX(lParam), MouseY(lParam)); return 0;
    case WM_CAPTURECHANGED: PictureButton_OnCaptureChanged(b, reinterpret_cast<HWND>(lParam)); return 0;
    case WM_DESTROY: PictureButton_OnDestroy(b); return 0;
    }
    return DefWindowProcA(hwnd, message, wParam, lParam);
}

// ==== The information text ====

enum InfoArt { INFO_CLOSE, INFO_PRINT, INFO_NEXT, INFO_PREVIOUS, INFO_ART_COUNT };

struct InfoTextState {
    HWND hwnd;
    ImageObject backdrop;  // screen-sized: felt and the text panel
    bool hasBackdrop;
    POINT panelAt;
    ImageObject strips[INFO_ART_COUNT];
    HWND closeButton, printButton;
    HFONT textFont;
    char lines[kInfoPageCount][kInfoLinesPerPage][kInfoLineCapacity];  // copied in when the screen is built
};

InfoTextState* InfoTextOf(HWND hwnd) {
    return reinterpret_cast<InfoTextState*>(GetWindowLongPtrA(hwnd, GWLP_USERDATA));
}

void CopyInfoLines(InfoTextState* s) {
    for (int page = 0; page < kInfoPageCount; ++page)
        for (int line = 0; line < kInfoLinesPerPage; ++line) {
            const InfoLine* entry = InfoTextLine(page, line);
            std::snprintf(s->lines[page][line], kInfoLineCapacity, "%s", entry && entry->text ? entry->text : "");
        }
}

void MakeInfoChildren(InfoTextState* s) {
    static const uint32_t kStripIds[INFO_ART_COUNT] = {kArtCloseAnimButton, kArtPrintButton, kArtInfoNextPageButton,
                                                       kArtInfoPreviousPageButton};
    static const PanelPlace kPlaces[INFO_ART_COUNT] = {kInfoClosePlace, kInfoPrintPlace, kInfoNextPlace,
                                                       kInfoPreviousPlace};
    for (int i = 0; i < INFO_ART_COUNT; ++i) {
        ImageObject_LoadFromPack(&s->strips[i], kStripIds[i]);
        int32_t width = kPanelButtonSide, height = kPanelButtonSide;
        bool sized = true;
        if (i == INFO_NEXT || i == INFO_PREVIOUS) {
            // A command button takes the size of one of its strip's three frames.
            sized = PackedDibSize(ImageObject_Dib(&s->strips[i]), &width, &height);
            height /= 3;
        }
        if (sized && height > 0 && s->hasBackdrop)
            DrawButtonSocket(&s->backdrop, s->panelAt, kPlaces[i], width, height);
    }
    s->closeButton = MakeAnimatedButton(s->hwnd, &s->strips[INFO_CLOSE], kInfoClosePlace, s->panelAt, kInfoCloseId);
    s->printButton = MakeAnimatedButton(s->hwnd, &s->strips[INFO_PRINT], kInfoPrintPlace, s->panelAt, kInfoPrintId);
    MakeCommandButton(s->hwnd, &s->strips[INFO_NEXT], kInfoNextPlace, s->panelAt, kInfoNextPageId);
    MakeCommandButton(s->hwnd, &s->strips[INFO_PREVIOUS], kInfoPreviousPlace, s->panelAt, kInfoPreviousPageId);
}

LRESULT InfoText_OnCreate(HWND hwnd) {
    InfoTextState* s = new (std::nothrow) InfoTextState();
    if (!s) return -1;
    s->hwnd = hwnd;
    for (ImageObject& strip : s->strips) ImageObject_Init(&strip, false);
    s->hasBackdrop = true;
    if (!ComposeScreenBackdrop(&s->backdrop, kArtInfoTextPanel, &s->panelAt)) {
        ImageObject_Destroy(&s->backdrop);
        s->hasBackdrop = false;
    }
    CopyInfoLines(s);
    s->textFont = CreateFontA(kInfoFontHeight, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, ANSI_CHARSET,
                              OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH | FF_DONTCARE,
                              kCommonFontFace);
    g_infoPage = 0;
    SetWindowLongPtrA(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(s));
    DisableOwner(hwnd);
    MakeInfoChildren(s);
    return 0;
}

// The page's 26 lines in black, each 13 pixels below the one before it within a paragraph and 20 below
// the last line of a paragraph. The rectangle's right and bottom are absolute and never cut the text
// (DT_NOCLIP).
void InfoText_Paint(InfoTextState* s, HDC dc, const RECT& area) {
    PaintFromBackdrop(dc, area, &s->backdrop, s->hasBackdrop, POINT{0, 0});
    int page = g_infoPage < 0 ? 0 : g_infoPage >= kInfoPageCount ? kInfoPageCount - 1 : g_infoPage;
    int oldMode = SetBkMode(dc, TRANSPARENT);
    COLORREF oldColour = SetTextColor(dc, RGB(0, 0, 0));
    HGDIOBJ oldFont = s->textFont ? SelectObject(dc, s->textFont) : nullptr;
    RECT place = {InfoTextLeft(ScreenWidth()), InfoTextTop(ScreenHeight()), 600, 400};
    for (int line = 0; line < kInfoLinesPerPage; ++line) {
        DrawTextA(dc, s->lines[page][line], -1, &place, DT_NOCLIP);
        place.top += InfoScreenStep(page, line);
    }
    if (oldFont) SelectObject(dc, oldFont);
    SetTextColor(dc, oldColour);
    SetBkMode(dc, oldMode);
}

void InfoText_OnPaint(InfoTextState* s) {
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(s->hwnd, &paint);
    if (dc) InfoText_Paint(s, dc, paint.rcPaint);
    EndPaint(s->hwnd, &paint);
}

void InfoText_OnPrintClient(InfoTextState* s, HDC dc) {
    RECT all = {0, 0, ScreenWidth(), ScreenHeight()};
    InfoText_Paint(s, dc, all);
}

void TurnInfoPage(InfoTextState* s, int32_t page) {
    if (page == g_infoPage) return;
    g_infoPage = page;
    InvalidateRect(s->hwnd, nullptr, FALSE);
}

void InfoText_OnNotify(InfoTextState* s, WPARAM event, HWND control) {
    if (control && (control == s->closeButton || control == s->printButton)) {
        AnimatedButtonSound(event);
        AnimatedButtonFeedback(control, event);
    }
    if (event != NOTIFY_CLICKED || !control) return;
    switch (GetDlgCtrlID(control)) {
    case kInfoCloseId: SendMessageA(s->hwnd, WM_CLOSE, 0, 0); return;
    case kInfoNextPageId: TurnInfoPage(s, InfoNextPage(g_infoPage)); return;
    case kInfoPreviousPageId: TurnInfoPage(s, InfoPreviousPage(g_infoPage)); return;
    case kInfoPrintId: g_printWithWaitWindow(s->hwnd, nullptr); return;
    }
}

void InfoText_OnKeyDown(InfoTextState* s, WPARAM key) {
    if (key == VK_ESCAPE) SendMessageA(s->hwnd, WM_CLOSE, 0, 0);
}

void InfoText_OnNcDestroy(InfoTextState* s) {
    if (s->textFont) DeleteObject(s->textFont);
    if (s->hasBackdrop) ImageObject_Destroy(&s->backdrop);
    for (ImageObject& strip : s->strips) ImageObject_Destroy(&strip);
    SetWindowLongPtrA(s->hwnd, GWLP_USERDATA, 0);
    delete s;
}

LRESULT CALLBACK InfoTextProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CREATE) return InfoText_OnCreate(hwnd);
    InfoTextState* s = InfoTextOf(hwnd);
    if (!s) return DefWindowProcA(hwnd, message, wParam, lParam);
    switch (message) {
    case WM_PAINT: InfoText_OnPaint(s); return 0;
    case WM_PRINTCLIENT: InfoText_OnPrintClient(s, reinterpret_cast<HDC>(wParam)); return 0;
    case WM_ERASEBKGND: return 1;
    case PM_NOTIFY: InfoText_OnNotify(s, wParam, reinterpret_cast<HWND>(lParam)); return 0;
    case WM_KEYDOWN: InfoText_OnKeyDown(s, wParam); return 0;
    case WM_CLOSE: CloseScreen(hwnd); return 0;
    case WM_DESTROY: EnableOwner(hwnd); return 0;
    case WM_NCDESTROY: InfoText_OnNcDestroy(s); break;
    }
    return DefWindowProcA(hwnd, message, wParam, lParam);
}

void RegisterOne(HINSTANCE instance, const char* name, WNDPROC procedure) {
    WNDCLASSA windowClass = {};
    windowClass.lpfnWndProc = procedure;
    windowClass.hInstance = instance;
    windowClass.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    windowClass.lpszClassName = name;
    RegisterClassA(&windowClass);
}

}  // namespace

void RegisterInfoClasses(HINSTANCE instance) {
    RegisterOne(instance, kGalleryClass, GalleryProc);
    RegisterOne(instance, kGalleryButtonClass, PictureButtonProc);
    RegisterOne(instance, kInfoTextClass, InfoTextProc);
}

HWND OpenGallery(HWND owner) { return MakeScreen(kGalleryClass, owner); }

HWND OpenInfoText(HWND owner) { return MakeScreen(kInfoTextClass, owner); }
