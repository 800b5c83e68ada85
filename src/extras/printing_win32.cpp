// The two print jobs on the default printer and the "printing, please wait" window.
#include "extras/printing_win32.h"

#include <winspool.h>

#include <cstdlib>
#include <cstring>

#include "app/app_win32.h"
#include "app/art_ids.h"
#include "app/message_window_win32.h"
#include "app/strings_win32.h"
#include "app/theme.h"
#include "extras/info_text.h"
#include "extras/music_win32.h"
#include "extras/print_layout.h"
#include "gfx/bmp_reader.h"
#include "gfx/dib.h"
#include "gfx/image_object_win32.h"
#include "gfx/pack.h"

namespace {

constexpr DWORD kWaitStyle = WS_POPUP | WS_VISIBLE;
// Used when the panel picture is missing, so that the window still stands where the squares go.
constexpr int32_t kWaitFallbackWidth = 494, kWaitFallbackHeight = 320;
constexpr int kWaitTextCapacity = 100;
// The words sit on the parchment between the printer picture and the squares.
constexpr RECT kWaitTextArea = {20, 150, 474, 200};
constexpr int32_t kWaitTextHeight = 26;
constexpr COLORREF kWaitTextColor = RGB(74, 46, 24);  // walnut ink on parchment

constexpr int32_t kTextWeight = 400;
constexpr COLORREF kCaptionColor = RGB(216, 146, 100);
constexpr COLORREF kInfoTextColor = RGB(0, 0, 0);
// EnumPrinters answers are a few names; anything larger is not an answer we asked for.
constexpr DWORD kPrinterInfoLargest = 64 * 1024;

// ---- The wait window ----

struct PrintWait {
    HWND window;
    ImageObject background;  // the panel, with the squares composed into it as they light
    ImageObject progress;    // 44 x 88: the unlit cell above, the lit one below
    char text[kWaitTextCapacity];
};

PrintWait* WaitOf(HWND window) { return reinterpret_cast<PrintWait*>(GetWindowLongPtrA(window, GWLP_USERDATA)); }

bool IsWaitWindow(HWND window) {
    char name[sizeof kPrintWaitClass + 1] = {};
    return window && IsWindow(window) && GetClassNameA(window, name, sizeof name) &&
           std::strcmp(name, kPrintWaitClass) == 0;
}

// Copies one cell of the progress picture (0 unlit, 1 lit) onto square k of the panel.
void PasteSquare(PrintWait* s, int32_t square, int32_t cell) {
    uint8_t* panel = ImageObject_Dib(&s->background);
    const uint8_t* cells = ImageObject_Dib(&s->progress);
    if (!panel || !cells) return;
    SoftBlit(panel, kPrintSquareX + kPrintSquareStep * square, kPrintSquareY, kPrintSquareSize, kPrintSquareSize,
             cells, 0, cell * kPrintSquareSize, kRopSrcCopy);
}

LRESULT Wait_OnCreate(HWND window, const CREATESTRUCTA* create) {
    PrintWait* s = static_cast<PrintWait*>(create->lpCreateParams);
    if (!s) return -1;
    s->window = window;
    SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(s));
    for (int32_t square = 0; square < kPrintSquareCount; ++square) PasteSquare(s, square, 0);
    return 0;
}

void Wait_Paint(PrintWait* s, HDC dc, const RECT* area) {
    PaintRect(dc, area, ImageObject_Dib(&s->background));
    HFONT font = CreateFontA(kWaitTextHeight, 0, 0, 0, kTextWeight, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                             OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH, kCommonFontFace);
    HGDIOBJ previous = font ? SelectObject(dc, font) : nullptr;
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, kWaitTextColor);
    RECT text = kWaitTextArea;
    DrawTextA(dc, s->text, -1, &text, DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
    if (previous) SelectObject(dc, previous);
    if (font) DeleteObject(font);
}

void Wait_OnPaint(PrintWait* s) {
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(s->window, &paint);
    Wait_Paint(s, dc, &paint.rcPaint);
    EndPaint(s->window, &paint);
}

void Wait_OnPrintClient(PrintWait* s, HDC dc) {
    RECT all;
    GetClientRect(s->window, &all);
    Wait_Paint(s, dc, &all);
}

void Wait_OnClose(PrintWait* s) {
    if (g_mainWindow) SetForegroundWindow(g_mainWindow);
    DestroyWindow(s->window);
}

void Wait_OnDestroy(PrintWait* s) {
    SetWindowLongPtrA(s->window, GWLP_USERDATA, 0);
    ImageObject_Destroy(&s->background);
    ImageObject_Destroy(&s->progress);
    std::free(s);
}

LRESULT CALLBACK PrintWaitProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CREATE) return Wait_OnCreate(window, reinterpret_cast<const CREATESTRUCTA*>(lParam));
    PrintWait* s = WaitOf(window);
    if (!s) return DefWindowProcA(window, message, wParam, lParam);
    switch (message) {
    case WM_PAINT: Wait_OnPaint(s); return 0;
    case WM_PRINTCLIENT: Wait_OnPrintClient(s, reinterpret_cast<HDC>(wParam)); return 0;
    case WM_ERASEBKGND: return 1;
    case WM_CLOSE: Wait_OnClose(s); return 0;
    case WM_DESTROY: Wait_OnDestroy(s); return 0;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

// ---- The printer ----

// The default printer's name into name. Windows 95 names it through EnumPrinters(PRINTER_ENUM_DEFAULT);
// NT systems and Wine answer that call with nothing and name it through GetDefaultPrinter instead.
bool DefaultPrinterName(char* name, DWORD capacity) {
    DWORD needed = 0, returned = 0;
    EnumPrintersA(PRINTER_ENUM_DEFAULT, nullptr, 5, nullptr, 0, &needed, &returned);
    if (needed >= sizeof(PRINTER_INFO_5A) && needed <= kPrinterInfoLargest) {
        BYTE* block = static_cast<BYTE*>(std::calloc(needed, 1));
        bool found = false;
        if (block && EnumPrintersA(PRINTER_ENUM_DEFAULT, nullptr, 5, block, needed, &needed, &returned) &&
            returned >= 1) {
            const PRINTER_INFO_5A* first = reinterpret_cast<const PRINTER_INFO_5A*>(block);
            if (first->pPrinterName && std::strlen(first->pPrinterName) < capacity) {
                std::strcpy(name, first->pPrinterName);
                found = true;
            }
        }
        std::free(block);
        if (found) return true;
    }
    DWORD size = capacity;
    return GetDefaultPrinterA(name, &size) && name[0];
}

HDC OpenDefaultPrinter() {
    char name[MAX_PATH] = {};
    if (!DefaultPrinterName(name, sizeof name)) return nullptr;
    return CreateDCA(nullptr, name, nullptr, nullptr);
}

bool StartPrintJob(HDC printer) {
    DOCINFOA document = {};
    document.cbSize = sizeof document;
    document.lpszDocName = kPrintDocumentName;
    return StartDocA(printer, &document) > 0;
}

// ---- Drawing bitmaps on a page ----

// Stretches a bottom-up DIB (info: header and colour table; bits: its rows) onto dc through a DIB
// section in a memory DC, so that every depth reaches the printer in its true colours.
void StretchDib(HDC dc, const BITMAPINFO* info, const uint8_t* bits, size_t bytes, int32_t x, int32_t y,
                int32_t width, int32_t height) {
    void* sectionBits = nullptr;
    HBITMAP section = CreateDIBSection(dc, info, DIB_RGB_COLORS, &sectionBits, nullptr, 0);
    if (!section) return;
    HDC memory = CreateCompatibleDC(dc);
    if (memory && sectionBits) {
        std::memcpy(sectionBits, bits, bytes);
        HGDIOBJ previous = SelectObject(memory, section);
        SetStretchBltMode(memory, COLORONCOLOR);
        SetStretchBltMode(dc, COLORONCOLOR);
        StretchBlt(dc, x, y, width, height, memory, 0, 0, info->bmiHeader.biWidth, info->bmiHeader.biHeight,
                   SRCCOPY);
        SelectObject(memory, previous);
    }
    if (memory) DeleteDC(memory);
    DeleteObject(section);
}

// A banner from the pack stretched to width x height at (x, y); a missing banner leaves its place blank.
void DrawBanner(HDC dc, uint32_t art, int32_t x, int32_t y, int32_t width, int32_t height) {
    uint8_t* dib = LoadPackItem(&g_pack, art);
    if (!dib) return;
    const DibHeader* header = DibHeaderOf(dib);
    int64_t bytes = DibStride(header->biBitCount, header->biWidth) * int64_t(header->biHeight);
    if (header->biHeight > 0 && bytes > 0 && uint64_t(bytes) <= header->biSizeImage &&
        header->biCompression == BI_RGB)
        StretchDib(dc, reinterpret_cast<const BITMAPINFO*>(dib), DibPixels(dib), size_t(bytes), x, y, width, height);
    FreePackedDib(dib);
}

void DrawPageFrame(HDC dc, const PrintFrame* frame) {
    DrawBanner(dc, kArtPrintHeader, 0, 0, frame->headerWidth, frame->headerHeight);
    DrawBanner(dc, kArtPrintFooter, 0, frame->pageHeight - frame->footerHeight, frame->footerWidth,
               frame->footerHeight);
}

// ---- The photograph ----

// The photograph as the BMP reader gives it: header, colour table and every row as stored.
struct PrintPicture {
    uint8_t info[sizeof(DibHeader) + 4 * kDibMaxColors];  // a BITMAPINFO
    uint8_t* pixels;
    int64_t stride;
    int32_t width, rows;
    bool topDown;
};

bool IsPrintableDepth(uint16_t bits) {
    return bits == 1 || bits == 4 || bits == 8 || bits == 16 || bits == 24 || bits == 32;
}

bool LoadPrintPicture(const char* path, PrintPicture* picture) {
    std::memset(picture, 0, sizeof *picture);
    BmpFileReader reader;
    InitBmpReader(&reader);
    DibHeader header;
    bool ok = OpenBmp(&reader, path) && !reader.compressed && BmpHeader(&reader, &header) &&
              IsPrintableDepth(header.biBitCount) && reader.colorCount <= kDibMaxColors &&
              BmpInfo(&reader, picture->info);
    int64_t bytes = ok ? BmpPixelBytes(&reader) : 0;
    if (bytes > 0) picture->pixels = static_cast<uint8_t*>(std::malloc(size_t(bytes)));
    ok = picture->pixels && ReadBmpPixels(&reader, picture->pixels);
    CloseBmp(&reader);
    if (!ok) {
        std::free(picture->pixels);
        picture->pixels = nullptr;
        return false;
    }
    // The reader hands over a 40-byte header whatever the file's own header size; say so to GDI.
    DibHeaderOf(picture->info)->biSize = sizeof(DibHeader);
    picture->width = header.biWidth;
    picture->topDown = header.biHeight < 0;
    picture->rows = picture->topDown ? -header.biHeight : header.biHeight;
    picture->stride = DibStride(header.biBitCount, header.biWidth);
    return true;
}

// One band: its rows gathered bottom-up (a top-down file is turned over on the way), then stretched.
void DrawPhotographBand(HDC dc, const PrintPicture* picture, const PhotoPrintLayout* layout, int32_t band) {
    size_t bytes = size_t(picture->stride) * size_t(layout->bandRows);
    uint8_t* rows = static_cast<uint8_t*>(std::malloc(bytes));
    if (!rows) return;
    int32_t first = PhotoBandFirstRow(layout, band);
    for (int32_t i = 0; i < layout->bandRows; ++i) {
        int32_t row = first + i;  // counted from the picture's bottom
        int32_t stored = picture->topDown ? picture->rows - 1 - row : row;
        std::memcpy(rows + size_t(picture->stride) * size_t(i), picture->pixels + picture->stride * stored,
                    size_t(picture->stride));
    }
    uint8_t info[sizeof picture->info];
    std::memcpy(info, picture->info, sizeof info);
    DibHeader* header = DibHeaderOf(info);
    header->biHeight = layout->bandRows;
    header->biSizeImage = 0;
    StretchDib(dc, reinterpret_cast<const BITMAPINFO*>(info), rows, bytes, layout->x, PhotoBandY(layout, band),
               layout->width, layout->bandHeight);
    std::free(rows);
}

void DrawPhotograph(HDC dc, const PrintFrame* frame, const PrintPicture* picture, HWND waitWindow, char* imagePath) {
    DrawPageFrame(dc, frame);
    PhotoPrintLayout layout;
    if (LayOutPhotograph(frame, picture->width, picture->rows, &layout)) {
        for (int32_t band = 0; band < kPrintBandCount; ++band) {
            LightPrintProgress(waitWindow, band);
            if (layout.bandRows > 0) DrawPhotographBand(dc, picture, &layout, band);
        }
    }
    MakeCaptionPath(imagePath, kPathCapacity);
    char* caption = ReadCaptionText(imagePath);
    if (caption) {
        DrawWrappedText(dc, caption, kCommonFontFace, kTextWeight, frame->headerHeight / 3, kCaptionColor, false, 0,
                        0, 0, frame->headerHeight, frame->pageWidth);
        std::free(caption);
    }
}

// ---- The information text ----

HFONT MakeInfoFont(int32_t height) {
    return CreateFontA(height, 0, 0, 0, kTextWeight, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                       CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH, kCommonFontFace);
}

// The widest of the page's lines in the font selected into dc.
int32_t WidestInfoLine(HDC dc, int32_t page) {
    int32_t widest = 0;
    for (int32_t line = 0; line < kInfoLinesPerPage; ++line) {
        const InfoLine* entry = InfoTextLine(page, line);
        SIZE size = {0, 0};
        if (entry && GetTextExtentPoint32A(dc, entry->text, int(strnlen(entry->text, kInfoLineCapacity)), &size) &&
            size.cx > widest)
            widest = size.cx;
    }
    return widest;
}

void DrawInformation(HDC dc, const PrintFrame* frame, const InfoPrintLayout* layout, int32_t page) {
    DrawPageFrame(dc, frame);
    HFONT font = MakeInfoFont(layout->lineHeight);
    if (!font) return;
    HGDIOBJ previous = SelectObject(dc, font);
    // The lines keep their places; a font too wide for the margins is made smaller until the widest line
    // fits between them (glyph sizes do not shrink in proportion at small heights, hence the loop).
    int32_t room = frame->pageWidth - 2 * layout->x;
    int32_t height = layout->lineHeight;
    for (int32_t widest = WidestInfoLine(dc, page); room > 0 && widest > room && height > 1;
         widest = WidestInfoLine(dc, page)) {
        int32_t smaller = int32_t(int64_t(height) * room / widest);
        height = smaller < height ? smaller : height - 1;
        if (height < 1) break;
        HFONT narrower = MakeInfoFont(height);
        if (!narrower) break;
        SelectObject(dc, narrower);
        DeleteObject(font);
        font = narrower;
    }
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, kInfoTextColor);
    SetTextAlign(dc, TA_LEFT | TA_TOP | TA_NOUPDATECP);
    for (int32_t line = 0; line < kInfoLinesPerPage; ++line) {
        const InfoLine* entry = InfoTextLine(page, line);
        if (entry) TextOutA(dc, layout->x, layout->y[line], entry->text, int(strnlen(entry->text, kInfoLineCapacity)));
    }
    SelectObject(dc, previous);
    DeleteObject(font);
}

}  // namespace

void RegisterPrintWaitClass(HINSTANCE instance) {
    WNDCLASSA windowClass = {};
    windowClass.lpfnWndProc = PrintWaitProc;
    windowClass.hInstance = instance;
    windowClass.hCursor = LoadCursorA(nullptr, IDC_WAIT);
    windowClass.lpszClassName = kPrintWaitClass;
    RegisterClassA(&windowClass);
}

HWND OpenPrintWaitWindow(HWND owner) {
    PrintWait* s = static_cast<PrintWait*>(std::calloc(1, sizeof(PrintWait)));
    if (!s) return nullptr;
    ImageObject_Init(&s->background, false);
    ImageObject_Init(&s->progress, false);
    int32_t width = kWaitFallbackWidth, height = kWaitFallbackHeight;
    if (ImageObject_LoadFromPack(&s->background, kArtPrintWaitPanel)) ImageObject_GetSize(&s->background, &width, &height);
    ImageObject_LoadFromPack(&s->progress, kArtProgressSquare);
    LoadLocalString(STR_PRINTING, s->text, kWaitTextCapacity);
    HWND window = CreateWindowExA(0, kPrintWaitClass, s->text, kWaitStyle, (g_screenWidth - width) / 2,
                                  (g_screenHeight - height) / 2, width, height, owner, nullptr,
                                  GetModuleHandleA(nullptr), s);
    if (!window) {
        // WM_CREATE never ran, or refused the block: it is still ours.
        ImageObject_Destroy(&s->background);
        ImageObject_Destroy(&s->progress);
        std::free(s);
        return nullptr;
    }
    // Printing holds the message loop: the window must be on the screen before it starts.
    UpdateWindow(window);
    return window;
}

void LightPrintProgress(HWND waitWindow, int32_t square) {
    if (square < 0 || square >= kPrintSquareCount || !IsWaitWindow(waitWindow)) return;
    PrintWait* s = WaitOf(waitWindow);
    if (!s) return;
    PasteSquare(s, square, 1);
    RECT cell = {kPrintSquareX + kPrintSquareStep * square, kPrintSquareY,
                 kPrintSquareX + kPrintSquareStep * square + kPrintSquareSize, kPrintSquareY + kPrintSquareSize};
    InvalidateRect(waitWindow, &cell, FALSE);
    UpdateWindow(waitWindow);
}

bool DrawPhotographPage(HDC dc, int32_t pageWidth, int32_t pageHeight, HWND waitWindow, char* imagePath) {
    PrintFrame frame;
    PrintPicture picture;
    if (!dc || !imagePath || !LayOutPrintFrame(pageWidth, pageHeight, &frame) || !LoadPrintPicture(imagePath, &picture))
        return false;
    DrawPhotograph(dc, &frame, &picture, waitWindow, imagePath);
    std::free(picture.pixels);
    return true;
}

bool DrawInformationPage(HDC dc, int32_t pageWidth, int32_t pageHeight, int32_t page) {
    PrintFrame frame;
    InfoPrintLayout layout;
    if (!dc || !LayOutPrintFrame(pageWidth, pageHeight, &frame) || !LayOutInfoPage(&frame, page, &layout)) return false;
    DrawInformation(dc, &frame, &layout, page);
    return true;
}

bool PrintPhotograph(HWND waitWindow, char* imagePath) {
    if (!imagePath) return false;
    HDC printer = OpenDefaultPrinter();
    if (!printer) return false;
    // The picture is read whole before the job starts, so an unreadable file prints no empty page.
    PrintFrame frame;
    PrintPicture picture = {};
    bool ok = LayOutPrintFrame(GetDeviceCaps(printer, HORZRES), GetDeviceCaps(printer, VERTRES), &frame) &&
              LoadPrintPicture(imagePath, &picture);
    if (ok && StartPrintJob(printer)) {
        ok = StartPage(printer) > 0;
        if (ok) {
            DrawPhotograph(printer, &frame, &picture, waitWindow, imagePath);
            ok = EndPage(printer) > 0;
        }
        if (ok)
            ok = EndDoc(printer) > 0;
        else
            AbortDoc(printer);
    } else {
        ok = false;
    }
    std::free(picture.pixels);
    DeleteDC(printer);
    return ok;
}

bool PrintInformation() {
    HDC printer = OpenDefaultPrinter();
    if (!printer) return false;
    PrintFrame frame;
    bool ok = LayOutPrintFrame(GetDeviceCaps(printer, HORZRES), GetDeviceCaps(printer, VERTRES), &frame) &&
              StartPrintJob(printer);
    if (ok) {
        for (int32_t page = 0; ok && page < kInfoPageCount; ++page) {
            InfoPrintLayout layout;
            ok = StartPage(printer) > 0;
            if (ok && LayOutInfoPage(&frame, page, &layout)) DrawInformation(printer, &frame, &layout, page);
            if (ok) ok = EndPage(printer) > 0;
        }
        if (ok)
            ok = EndDoc(printer) > 0;
        else
            AbortDoc(printer);
    }
    DeleteDC(printer);
    return ok;
}

void PrintWithWaitWindow(HWND owner, const char* imagePath) {
    HWND wait = OpenPrintWaitWindow(owner);
    PauseMusic();
    if (imagePath) {
        // The photograph print leaves the caption's path in its buffer; the caller's path stays as it was.
        char path[kPathCapacity] = {};
        std::strncpy(path, imagePath, kPathCapacity - 1);
        PrintPhotograph(wait, path);
    } else {
        PrintInformation();
    }
    ResumeMusic();
    if (wait) SendMessageA(wait, WM_CLOSE, 0, 0);
}
