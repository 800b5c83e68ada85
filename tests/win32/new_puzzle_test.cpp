// `CWNDNEW` and `CWNDPREVFS`: the panel's children and pages, the page wipe, the thumbnails and their
// selection, the sliders and choosers kept in step, the shapes, start, close and moving the panel.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "app/app_state.h"
#include "app/app_win32.h"
#include "app/art_ids.h"
#include "app/launchers_win32.h"
#include "app/platform.h"
#include "app/theme.h"
#include "app/title_window_win32.h"
#include "controls/control_messages.h"
#include "gfx/dib.h"
#include "gfx/pack_writer.h"
#include "gfx/file_list.h"
#include "gfx/pack.h"
#include "message_log_win32.h"
#include "puzzle/model.h"
#include "puzzle/picture.h"
#include "setup/chooser_classes_win32.h"
#include "setup/choosers.h"
#include "setup/new_puzzle_layout.h"
#include "setup/new_puzzle_win32.h"
#include "win32_support.h"

namespace {

const COLORREF kBackdropColor = RGB(210, 190, 150);
const COLORREF kFrameColor = kSelectedTextColor;  // the chosen thumbnail's frame
const COLORREF kPhotoColors[] = {RGB(200, 40, 40),  RGB(40, 200, 40),  RGB(40, 40, 200), RGB(200, 200, 40),
                                 RGB(200, 40, 200), RGB(40, 200, 200), RGB(120, 60, 30)};
const COLORREF kUnpainted = RGB(1, 2, 3);

// Where test panels stand; pixels are read through WM_PRINTCLIENT, so other windows over them do not matter.
const POINT kPanelAt = {30, 420};


int g_startCalls = 0;
int32_t g_startedShape = -1;
void RecordStart(int32_t shape) {
    ++g_startCalls;
    g_startedShape = shape;
}

std::vector<std::string> g_shellFiles;
BOOL WINAPI RecordShell(SHELLEXECUTEINFOA* info) {
    g_shellFiles.push_back(info->lpFile ? info->lpFile : "");
    return TRUE;
}

// A program folder with an Image folder, the globals the screen reads set for a 1024 x 768 screen, and
// the classes registered. Optionally a pack with every picture the screen loads. Restores what it changed.
struct NewPuzzleFixture {
    TempFolder folder;
    char savedFolder[kPathCapacity];
    PuzzleState savedPuzzle;
    int32_t savedWidth, savedHeight;
    HWND savedMain;
    bool packOpened = false;
    std::vector<uint8_t*> packItems;
    HWND panel = nullptr;

    NewPuzzleFixture() : savedPuzzle(g_puzzle), savedWidth(g_screenWidth), savedHeight(g_screenHeight),
                         savedMain(g_mainWindow) {
        std::memcpy(savedFolder, g_appFolder, sizeof savedFolder);
        std::snprintf(g_appFolder, sizeof g_appFolder, "%s", folder.path.c_str());
        CreateDirectoryA(folder.File("Image").c_str(), nullptr);
        HINSTANCE instance = GetModuleHandleA(nullptr);
        EnsureControlClasses();
        EXPECT_TRUE(RegisterChooserAndPreviewClasses(instance));
        EXPECT_TRUE(RegisterNewPuzzleClasses(instance));
        g_screenWidth = 1024;
        g_screenHeight = 768;
        g_puzzle.tableWidth = 0;
        g_puzzle.tableHeight = 0;
        g_puzzle.rows = 0;
        g_puzzle.cols = 0;
        ForgetChosenImage();
        ClearCurrentPicture();
        g_startCalls = 0;
        g_startedShape = -1;
        g_startNewGame = RecordStart;
    }
    ~NewPuzzleFixture() {
        if (panel && IsWindow(panel)) DestroyWindow(panel);
        FlushMessages();
        g_startNewGame = nullptr;
        if (packOpened) ClosePack(&g_pack);
        for (uint8_t* item : packItems) FreePackedDib(item);
        ForgetChosenImage();
        ClearCurrentPicture();
        g_puzzle = savedPuzzle;
        g_screenWidth = savedWidth;
        g_screenHeight = savedHeight;
        g_mainWindow = savedMain;
        std::memcpy(g_appFolder, savedFolder, sizeof savedFolder);
    }

    // Image\PhotoK.bmp, a solid picture in colour K.
    void AddPhoto(int k, int32_t width = 640, int32_t height = 480) {
        uint8_t* dib = MakeSolidDib(width, height, kPhotoColors[k]);
        ASSERT_TRUE(WriteDibAsBmp(folder.File(("Image\\Photo" + std::to_string(k) + ".bmp").c_str()).c_str(), dib));
        FreePackedDib(dib);
    }
    void AddPhotos(int count) {
        for (int k = 0; k < count; ++k) AddPhoto(k);
    }

    // A pack with every picture of the screen: a plain backdrop, strips in bands of their own colours.
    void UsePack() {
        uint32_t language = uint32_t(g_language);
        std::vector<std::pair<uint32_t, const uint8_t*>> items;
        auto add = [&](uint32_t id, uint8_t* dib) {
            packItems.push_back(dib);
            items.emplace_back(id, dib);
        };
        add(kArtNewPuzzlePanel + language, MakeSolidDib(640, 300, kBackdropColor));
        add(kArtNewPuzzleCloseButton, MakeFrameStrip(40, 40, {RGB(90, 0, 0), RGB(120, 0, 0), RGB(150, 0, 0)}));
        add(kArtNewPuzzleHelpButton, MakeFrameStrip(40, 40, {RGB(0, 90, 0), RGB(0, 120, 0), RGB(0, 150, 0)}));
        for (uint32_t tab : {kArtTabPictures, kArtTabSize, kArtTabPieces, kArtTabShape})
            add(tab + language, MakeFrameStrip(120, 36, {RGB(100, 60, 20), RGB(130, 80, 30), RGB(240, 230, 200),
                                                          RGB(250, 240, 210)}));
        for (uint32_t check : {kArtShapeClassicCheck, kArtShapeDovetailCheck, kArtShapeWaveCheck})
            add(check + language,
                MakeFrameStrip(150, 32, {RGB(60, 60, 60), RGB(80, 80, 80), RGB(20, 160, 20), RGB(40, 200, 40)}));
        for (uint32_t button : {kArtFitSizeButton, kArtActualSizeButton, kArtStartButton, kArtSpinningPiece})
            add(button, MakeDib24(500, 50, [](int x, int) { return RGB(x / 50 * 20, 40, 90); }));
        add(kArtShapePicture, MakeFrameStrip(200, 140, {RGB(250, 0, 0), RGB(0, 250, 0), RGB(0, 0, 250)}));
        add(kArtZoomScroll, MakeSolidDib(30, 480, RGB(70, 70, 140)));
        add(kArtCountScroll, MakeSolidDib(30, 480, RGB(70, 140, 70)));
        add(kArtImageListScroll, MakeSolidDib(30, 384, RGB(140, 70, 70)));
        std::string path = folder.File("Test.rf");
        ASSERT_TRUE(WriteTestPack(path, items));
        ASSERT_FALSE(IsPackOpen(&g_pack));
        ASSERT_TRUE(OpenPack(&g_pack, path.c_str()));
        packOpened = true;
    }

    // The panel as a test builds it: shown without activation (an active popup costs two seconds on
    // destroy under Wine without a window manager).
    HWND Build() {
        panel = CreateWindowExA(0, kNewPuzzleClass, "", WS_POPUP | WS_CLIPCHILDREN, kPanelAt.x, kPanelAt.y,
                                kNewPuzzlePanelWidth, kNewPuzzlePanelHeight, nullptr, nullptr,
                                GetModuleHandleA(nullptr), nullptr);
        if (panel) {
            SetWindowPos(panel, HWND_TOP, 0, 0, 0, 0, SWP_SHOWWINDOW | SWP_NOACTIVATE | SWP_NOMOVE | SWP_NOSIZE);
            UpdateWindow(panel);
            PumpMessages(30);
        }
        return panel;
    }
};

const NewPuzzleScreen& S() { return g_newPuzzle; }

bool Shown(HWND hwnd) { return hwnd && (GetWindowLongPtrA(hwnd, GWL_STYLE) & WS_VISIBLE) != 0; }

bool Checked(HWND box) { return SendMessageA(box, PM_GETCHECKED, 0, 0) != 0; }

int CheckedCount(const HWND* boxes, int n) {
    int count = 0;
    for (int i = 0; i < n; ++i) count += Checked(boxes[i]);
    return count;
}

// What a control sends when clicked, as the panel receives it.
void Notify(HWND control, WPARAM event = NOTIFY_CLICKED) {
    SendMessageA(GetParent(control), PM_NOTIFY, event, reinterpret_cast<LPARAM>(control));
}

// A radio box clicked while unchecked checks itself, then tells its parent.
void ClickRadio(HWND box) {
    SendMessageA(box, PM_SETCHECKED, 0, 1);
    Notify(box);
}

void ClickSlot(HWND slot, int x = 50, int y = 60) {
    SendMessageA(slot, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    SendMessageA(slot, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
}

// A scroll control moved by the player: the new position, then the change notice.
void MoveScroll(HWND scroll, int32_t position) {
    SendMessageA(scroll, PM_SCR_SETPOSITION, 0, position);
    Notify(scroll);
}

int32_t Position(HWND scroll) { return int32_t(SendMessageA(scroll, PM_SCR_GETPOSITION, 0, 0)); }
int32_t Minimum(HWND scroll) { return int32_t(SendMessageA(scroll, PM_SCR_GETMINIMUM, 0, 0)); }
int32_t Maximum(HWND scroll) { return int32_t(SendMessageA(scroll, PM_SCR_GETMAXIMUM, 0, 0)); }

std::string LabelText(HWND label) {
    char text[64] = {};
    SendMessageA(label, PM_TXT_GETTEXT, sizeof text, reinterpret_cast<LPARAM>(text));
    return text;
}

void ExpectNumbers(int32_t rows, int32_t cols) {
    EXPECT_EQ(LabelText(S().numbers[0]), std::to_string(rows));
    EXPECT_EQ(LabelText(S().numbers[1]), std::to_string(cols));
    EXPECT_EQ(LabelText(S().numbers[2]), std::to_string(rows * cols));
}

// The sliders and numbers as the choosers' state says they should stand.
void ExpectInStep() {
    EXPECT_EQ(Position(S().zoomSlider), GetZoomPercent());
    EXPECT_EQ(Minimum(S().countSlider), 0);
    EXPECT_EQ(Maximum(S().countSlider), GetCountSteps());
    EXPECT_EQ(Position(S().countSlider), GetCountPosition());
    ExpectNumbers(g_puzzle.rows, g_puzzle.cols);
}

// The colour of the photograph at list entry e ("PhotoK.bmp" has colour K).
COLORREF EntryColour(int32_t entry) {
    char name[64];
    FileNameAt(&S().images, entry, false, name, sizeof name);
    return kPhotoColors[std::atoi(name + 5)];
}

std::unique_ptr<Canvas> PrintClient(HWND hwnd, int width, int height) {
    auto canvas = std::make_unique<Canvas>(width, height, kUnpainted);
    SendMessageA(hwnd, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(canvas->dc), PRF_CLIENT);
    return canvas;
}
std::unique_ptr<Canvas> PrintSlot(int slot) { return PrintClient(S().slots[slot], kSlotWidth, kSlotHeight); }

POINT PlaceOf(HWND child) {
    RECT r = {};
    GetWindowRect(child, &r);
    MapWindowPoints(HWND_DESKTOP, GetParent(child), reinterpret_cast<POINT*>(&r), 2);
    return POINT{r.left, r.top};
}

std::string ClassOf(HWND hwnd) {
    char name[64] = {};
    GetClassNameA(hwnd, name, sizeof name);
    return name;
}

std::vector<HWND> PageControlsOf(int page) {
    const NewPuzzleScreen& s = S();
    switch (page) {
    case PAGE_PICTURES: return {s.slots[0], s.slots[1], s.slots[2], s.slots[3], s.imageScroll};
    case PAGE_SIZE: return {s.fitSizeButton, s.actualSizeButton, s.zoomSlider, s.sizeChooser};
    case PAGE_PIECES:
        return {s.countChooser, s.countSlider, s.captions[0], s.captions[1], s.captions[2],
                s.numbers[0],   s.numbers[1],  s.numbers[2]};
    default: return {s.shapeChecks[0], s.shapeChecks[1], s.shapeChecks[2], s.shapePicture};
    }
}

void ExpectOnlyPageShown(int page) {
    for (int p = 0; p < kNewPuzzlePageCount; ++p)
        for (HWND control : PageControlsOf(p))
            EXPECT_EQ(Shown(control), p == page) << "page " << p << " shown " << page;
    const NewPuzzleScreen& s = S();
    for (HWND always : {s.closeButton, s.helpButton, s.startButton, s.decoration, s.tabs[0], s.tabs[1], s.tabs[2],
                        s.tabs[3]})
        EXPECT_TRUE(Shown(always));
    EXPECT_EQ(s.page, page);
    for (int p = 0; p < kNewPuzzlePageCount; ++p) EXPECT_EQ(Checked(s.tabs[p]), p == page) << "tab " << p;
}

}  // namespace

TEST(NewPuzzleScreen, RegistersBothClassesWithTheArrowAndNoBackground) {
    HINSTANCE instance = GetModuleHandleA(nullptr);
    EXPECT_TRUE(RegisterNewPuzzleClasses(instance));
    EXPECT_TRUE(RegisterNewPuzzleClasses(instance));  // already registered counts
    for (const char* name : {"CWNDNEW", "CWNDPREVFS"}) {
        WNDCLASSA wc = {};
        ASSERT_TRUE(GetClassInfoA(instance, name, &wc)) << name;
        EXPECT_EQ(wc.hbrBackground, nullptr) << name;
        EXPECT_EQ(wc.cbWndExtra, 0) << name;
        EXPECT_EQ(wc.hCursor, LoadCursorA(nullptr, IDC_ARROW)) << name;
    }
}

TEST(NewPuzzleScreen, BuildsEveryChildAtItsPlace) {
    NewPuzzleFixture f;
    f.UsePack();
    ASSERT_NE(f.Build(), nullptr);
    const NewPuzzleScreen& s = S();
    EXPECT_EQ(s.panel, f.panel);
    auto expectAt = [](HWND child, const char* className, int x, int y, int w, int h) {
        ASSERT_NE(child, nullptr) << className;
        EXPECT_EQ(ClassOf(child), className);
        POINT p = PlaceOf(child);
        EXPECT_EQ(p.x, x) << className;
        EXPECT_EQ(p.y, y) << className;
        SIZE size = WindowSize(child);
        EXPECT_EQ(size.cx, w) << className << " at " << x << "," << y;
        EXPECT_EQ(size.cy, h) << className << " at " << x << "," << y;
    };
    expectAt(s.closeButton, "CQMCOMMAND", 119, 255, 40, 40);
    expectAt(s.helpButton, "CQMCOMMAND", 514, 257, 40, 40);
    expectAt(s.fitSizeButton, "CQMANIM", 452, 44, 50, 50);
    expectAt(s.actualSizeButton, "CQMANIM", 452, 134, 50, 50);
    expectAt(s.startButton, "CQMANIM", 246, 235, 50, 50);
    expectAt(s.shapePicture, "CQMANIM", 147, 65, 200, 140);
    expectAt(s.decoration, "CQMANIM", 395, 235, 50, 50);
    expectAt(s.zoomSlider, "CQMSROLL", 365, 61, 30, 160);
    expectAt(s.countSlider, "CQMSROLL", 365, 61, 30, 160);
    expectAt(s.imageScroll, "CQMSROLL", 555, 75, 30, 128);
    for (int i = 0; i < kNewPuzzlePageCount; ++i) {
        expectAt(s.tabs[i], "CQMCHECK", TabLeft(i), kTabTop, 120, 36);
        EXPECT_EQ(GetDlgCtrlID(s.tabs[i]), 300 + i);
        EXPECT_EQ(SendMessageA(s.tabs[i], PM_GETRADIO, 0, 0), 1);
    }
    for (int i = 0; i < kThumbnailSlotCount; ++i) {
        expectAt(s.slots[i], "CWNDPREVFS", 106 + 111 * i, 88, 108, 127);
        EXPECT_EQ(GetDlgCtrlID(s.slots[i]), 300 + i);  // the same ids as the tabs
    }
    for (int k = 0; k < kShapeCount; ++k) {
        Point p = ShapeCheckPlace(k);
        expectAt(s.shapeChecks[k], "CQMCHECK", p.x, p.y, 150, 32);
        EXPECT_EQ(GetDlgCtrlID(s.shapeChecks[k]), 200 + k);
        EXPECT_EQ(SendMessageA(s.shapeChecks[k], PM_GETRADIO, 0, 0), 1);
    }
    for (int i = 0; i < kCaptionCount; ++i) {
        EXPECT_EQ(ClassOf(s.captions[i]), "CQMTXT");
        EXPECT_EQ(PlaceOf(s.captions[i]).x, 410);
        EXPECT_EQ(PlaceOf(s.captions[i]).y, kCaptionTops[i]);
        EXPECT_EQ(PlaceOf(s.numbers[i]).y, kCaptionTops[i]);
        // Beside the captions, in one column right of the widest.
        EXPECT_GE(PlaceOf(s.numbers[i]).x, PlaceOf(s.captions[i]).x + WindowSize(s.captions[i]).cx);
        EXPECT_EQ(PlaceOf(s.numbers[i]).x, PlaceOf(s.numbers[0]).x);
    }
    EXPECT_EQ(LabelText(s.captions[0]), "Rows:");
    EXPECT_EQ(LabelText(s.captions[1]), "Columns:");
    EXPECT_EQ(LabelText(s.captions[2]), "Number of pieces: ");
    EXPECT_EQ(ClassOf(s.sizeChooser), "CWNDIMAGETAM");
    EXPECT_EQ(ClassOf(s.countChooser), "CWNDIMAGECANT");
    EXPECT_EQ(PlaceOf(s.countChooser).x, 115);
    EXPECT_EQ(PlaceOf(s.countChooser).y, 61);
    EXPECT_EQ(s.shape, 0);
    EXPECT_TRUE(Checked(s.shapeChecks[0]));
    EXPECT_EQ(SendMessageA(s.shapePicture, PM_ANIM_GETFRAME, 0, 0), 0);
    EXPECT_EQ(SendMessageA(s.decoration, PM_ANIM_GETRUNNING, 0, 0), 1);  // the spinning piece turns all along
}

TEST(NewPuzzleScreen, OpensOnThePicturesPageWithOnlyItsControlsShown) {
    NewPuzzleFixture f;
    ASSERT_NE(f.Build(), nullptr);  // no pack: controls without strips are inert but exist
    ExpectOnlyPageShown(PAGE_PICTURES);
}

TEST(NewPuzzleScreen, PageSwitchesShowAndHideTheRightControls) {
    NewPuzzleFixture f;
    f.UsePack();
    ASSERT_NE(f.Build(), nullptr);
    for (int page : {PAGE_SIZE, PAGE_PIECES, PAGE_SHAPE, PAGE_PICTURES, PAGE_SHAPE, PAGE_SIZE}) {
        ClickRadio(S().tabs[page]);
        ExpectOnlyPageShown(page);
    }
}

TEST(NewPuzzleScreen, PageSwitchWipesTheOldPageInFourPixelStrips) {
    NewPuzzleFixture f;
    f.UsePack();
    ASSERT_NE(f.Build(), nullptr);
    EXPECT_EQ(S().wipeStrips, 0u);
    ClickRadio(S().tabs[PAGE_PIECES]);
    EXPECT_EQ(S().wipeStrips, 58u);  // one strip for each v = 2, 6, .., 230
    ClickRadio(S().tabs[PAGE_PICTURES]);
    EXPECT_EQ(S().wipeStrips, 116u);
    // The wiped area shows the backdrop where no control of the new page stands.
    PumpMessages(30);
    auto panel = PrintClient(f.panel, kNewPuzzlePanelWidth, kNewPuzzlePanelHeight);
    EXPECT_EQ(panel->At(kPageArea.x + 5, kPageArea.y + 5), kBackdropColor);
}

TEST(NewPuzzleScreen, ClickingTheTabOfThePageShownDoesNothing) {
    NewPuzzleFixture f;
    f.UsePack();
    ASSERT_NE(f.Build(), nullptr);
    ClickRadio(S().tabs[PAGE_SIZE]);
    uint32_t strips = S().wipeStrips;
    // Even a click notice from the tab already checked (a radio tab sends none) changes nothing.
    ClickRadio(S().tabs[PAGE_SIZE]);
    EXPECT_EQ(S().wipeStrips, strips);
    ExpectOnlyPageShown(PAGE_SIZE);
}

TEST(NewPuzzleScreen, FewerThanFourImagesGiveScrollRangeZeroToZeroAndEmptySlots) {
    NewPuzzleFixture f;
    f.AddPhotos(2);
    ASSERT_NE(f.Build(), nullptr);
    EXPECT_EQ(S().images.count, 2);
    EXPECT_EQ(Minimum(S().imageScroll), 0);
    EXPECT_EQ(Maximum(S().imageScroll), 0);
    EXPECT_EQ(Position(S().imageScroll), 0);
    int32_t w = 0, h = 0;
    EXPECT_TRUE(GetSlotThumbnail(S().slots[0], &w, &h));
    EXPECT_TRUE(GetSlotThumbnail(S().slots[1], &w, &h));
    EXPECT_FALSE(GetSlotThumbnail(S().slots[2], &w, &h));
    EXPECT_FALSE(GetSlotThumbnail(S().slots[3], &w, &h));
    // The upper button cannot scroll past the range either.
    SendMessageA(S().imageScroll, PM_SCR_SETPOSITION, 0, 1);
    Notify(S().imageScroll);
    EXPECT_EQ(Position(S().imageScroll), 0);
    EXPECT_FALSE(GetSlotThumbnail(S().slots[2], &w, &h));
    // Clicking an empty slot chooses nothing.
    ClickSlot(S().slots[3]);
    EXPECT_EQ(S().selection, -1);
    EXPECT_EQ(CurrentPicture(), nullptr);
}

TEST(NewPuzzleScreen, WithNoImageFolderTheListIsEmptyAndNoSlotShowsAnything) {
    NewPuzzleFixture f;
    RemoveDirectoryA(f.folder.File("Image").c_str());
    ASSERT_NE(f.Build(), nullptr);
    EXPECT_EQ(S().images.count, 0);
    EXPECT_EQ(Minimum(S().imageScroll), 0);
    EXPECT_EQ(Maximum(S().imageScroll), 0);
    int32_t w = 0, h = 0;
    for (HWND slot : S().slots) EXPECT_FALSE(GetSlotThumbnail(slot, &w, &h));
}

TEST(NewPuzzleScreen, SevenImagesScrollFromMinusThreeAndTheSlotsFollow) {
    NewPuzzleFixture f;
    f.UsePack();
    f.AddPhotos(7);
    ASSERT_NE(f.Build(), nullptr);
    ASSERT_EQ(S().images.count, 7);
    EXPECT_EQ(Minimum(S().imageScroll), -3);
    EXPECT_EQ(Maximum(S().imageScroll), 0);
    EXPECT_EQ(Position(S().imageScroll), 0);
    EXPECT_EQ(SendMessageA(S().imageScroll, PM_SCR_GETSTEP, 0, 0), 1);
    for (int32_t position : {0, -3, -1}) {
        MoveScroll(S().imageScroll, position);
        for (int i = 0; i < kThumbnailSlotCount; ++i) {
            auto slot = PrintSlot(i);
            EXPECT_EQ(slot->At(54, 63), EntryColour(i - position)) << "slot " << i << " at " << position;
        }
    }
}

TEST(NewPuzzleScreen, ThumbnailsAreFittedInto104By123AndCentred) {
    NewPuzzleFixture f;
    f.UsePack();
    f.AddPhoto(0, 640, 480);
    f.AddPhoto(1, 480, 640);
    ASSERT_NE(f.Build(), nullptr);
    for (int i = 0; i < 2; ++i) {
        int32_t w = 0, h = 0;
        ASSERT_TRUE(GetSlotThumbnail(S().slots[i], &w, &h));
        bool landscape = EntryColour(i) == kPhotoColors[0];
        EXPECT_EQ(w, landscape ? 104 : 92);
        EXPECT_EQ(h, landscape ? 78 : 123);
        int x = (108 - w) / 2, y = (127 - h) / 2;
        COLORREF photo = EntryColour(i);
        auto slot = PrintSlot(i);
        EXPECT_EQ(slot->At(x, y), photo);
        EXPECT_EQ(slot->At(x + w - 1, y + h - 1), photo);
        EXPECT_EQ(slot->At(x - 1, y + h / 2), kBackdropColor);  // the rest of the slot shows the backdrop
        EXPECT_EQ(slot->At(x + w, y + h / 2), kBackdropColor);
        EXPECT_EQ(slot->At(x + w / 2, y - 1), kBackdropColor);
        EXPECT_EQ(slot->At(x + w / 2, y + h), kBackdropColor);
        EXPECT_EQ(slot->At(0, 0), kBackdropColor);
        EXPECT_EQ(slot->At(107, 126), kBackdropColor);
    }
}

TEST(NewPuzzleScreen, AnUnreadableImageLeavesItsSlotEmpty) {
    NewPuzzleFixture f;
    f.UsePack();
    ASSERT_TRUE(WriteFileBytes(f.folder.File("Image\\Broken.bmp"), "BMnot a picture at all"));
    ASSERT_NE(f.Build(), nullptr);
    ASSERT_EQ(S().images.count, 1);
    int32_t w = 0, h = 0;
    EXPECT_FALSE(GetSlotThumbnail(S().slots[0], &w, &h));
    auto slot = PrintSlot(0);
    EXPECT_EQ(slot->At(54, 63), kBackdropColor);
    ClickSlot(S().slots[0]);
    EXPECT_EQ(S().selection, -1);
    EXPECT_FALSE(g_choosers.image_chosen);
}

TEST(NewPuzzleScreen, ClickingAThumbnailSelectsItLoadsThePictureAndRefreshesSlidersAndNumbers) {
    NewPuzzleFixture f;
    f.UsePack();
    f.AddPhotos(3);
    ASSERT_NE(f.Build(), nullptr);
    EXPECT_EQ(S().selection, -1);
    ClickSlot(S().slots[1]);
    EXPECT_EQ(S().selection, 1);
    char name[64];
    FileNameAt(&S().images, 1, false, name, sizeof name);
    EXPECT_EQ(std::string(CurrentPicturePath()), f.folder.path + "Image\\" + name);
    ASSERT_TRUE(g_choosers.image_chosen);
    // 640 x 480 on the 947 x 640 table: the zoom starts at the fit, the count at the most pieces.
    EXPECT_DOUBLE_EQ(g_puzzle.scale, 640.0 / 480.0);
    EXPECT_EQ(g_puzzle.rows, 14);  // trunc(480 * 4 / 3 / 45)
    EXPECT_EQ(g_puzzle.cols, 18);  // trunc(640 * 4 / 3 / 45)
    ExpectInStep();
    EXPECT_EQ(Position(S().countSlider), GetCountSteps());
    // The chosen slot has the frame, two pixels wide just outside its picture; the others have none.
    auto chosen = PrintSlot(1);
    EXPECT_EQ(chosen->At(50, 22), kFrameColor);
    EXPECT_EQ(chosen->At(50, 23), kFrameColor);
    EXPECT_EQ(chosen->At(50, 24), EntryColour(1));
    EXPECT_EQ(chosen->At(50, 21), kBackdropColor);
    EXPECT_EQ(chosen->At(0, 60), kFrameColor);
    EXPECT_EQ(chosen->At(107, 60), kFrameColor);
    EXPECT_EQ(chosen->At(50, 103), kFrameColor);
    EXPECT_EQ(chosen->At(50, 104), kBackdropColor);
    for (int other : {0, 2}) {
        auto slot = PrintSlot(other);
        EXPECT_EQ(slot->At(50, 22), kBackdropColor) << other;
        EXPECT_EQ(slot->At(0, 60), kBackdropColor) << other;
    }
    // Choosing another moves the frame.
    ClickSlot(S().slots[2]);
    EXPECT_EQ(S().selection, 2);
    EXPECT_EQ(PrintSlot(1)->At(50, 22), kBackdropColor);
    EXPECT_EQ(PrintSlot(2)->At(50, 22), kFrameColor);
}

TEST(NewPuzzleScreen, TheFrameFollowsTheChosenImageWhenTheListScrolls) {
    NewPuzzleFixture f;
    f.UsePack();
    f.AddPhotos(5);
    ASSERT_NE(f.Build(), nullptr);
    ClickSlot(S().slots[1]);
    ASSERT_EQ(S().selection, 1);
    MoveScroll(S().imageScroll, -1);  // slot 0 now shows entry 1
    EXPECT_EQ(PrintSlot(0)->At(50, 22), kFrameColor);
    EXPECT_EQ(PrintSlot(1)->At(50, 22), kBackdropColor);
    // A click now chooses slot - position.
    ClickSlot(S().slots[3]);
    EXPECT_EQ(S().selection, 4);
}

TEST(NewPuzzleScreen, AReleaseOutsideThePressedSlotChoosesNothing) {
    NewPuzzleFixture f;
    f.UsePack();
    f.AddPhotos(2);
    ASSERT_NE(f.Build(), nullptr);
    HWND slot = S().slots[0];
    SendMessageA(slot, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(50, 60));
    EXPECT_EQ(GetCapture(), slot);
    EXPECT_EQ(PrintSlot(0)->At(50, 22), kFrameColor);  // the pressed slot shows the frame
    SendMessageA(slot, WM_LBUTTONUP, 0, MAKELPARAM(120, 60));
    EXPECT_NE(GetCapture(), slot);
    EXPECT_EQ(S().selection, -1);
    EXPECT_EQ(CurrentPicture(), nullptr);
    EXPECT_EQ(PrintSlot(0)->At(50, 22), kBackdropColor);
}

TEST(NewPuzzleScreen, ThePictureAlreadyChosenIsFramedWhenTheScreenOpens) {
    NewPuzzleFixture f;
    f.AddPhotos(3);
    ASSERT_NE(f.Build(), nullptr);
    ClickSlot(S().slots[2]);
    DestroyWindow(f.panel);
    EXPECT_EQ(S().panel, nullptr);
    ASSERT_NE(f.Build(), nullptr);
    EXPECT_EQ(S().selection, 2);
}

TEST(NewPuzzleScreen, ShapeChecksChooseTheShapeAndTheShapePictureFollows) {
    NewPuzzleFixture f;
    f.UsePack();
    ASSERT_NE(f.Build(), nullptr);
    ClickRadio(S().tabs[PAGE_SHAPE]);
    for (int k : {2, 1, 0, 2}) {
        ClickRadio(S().shapeChecks[k]);
        EXPECT_EQ(S().shape, k);
        EXPECT_EQ(SendMessageA(S().shapePicture, PM_ANIM_GETFRAME, 0, 0), k);
        for (int j = 0; j < kShapeCount; ++j) EXPECT_EQ(Checked(S().shapeChecks[j]), j == k) << k << " " << j;
    }
}

TEST(NewPuzzleScreen, ShapePictureClickedThreeTimesReturnsToTheFirstShapeWithOneCheckSetThroughout) {
    NewPuzzleFixture f;
    f.UsePack();
    ASSERT_NE(f.Build(), nullptr);
    ClickRadio(S().tabs[PAGE_SHAPE]);
    EXPECT_EQ(CheckedCount(S().shapeChecks, kShapeCount), 1);
    for (int click = 1; click <= 3; ++click) {
        Notify(S().shapePicture);
        int expected = click % 3;
        EXPECT_EQ(S().shape, expected);
        EXPECT_EQ(SendMessageA(S().shapePicture, PM_ANIM_GETFRAME, 0, 0), expected);
        EXPECT_EQ(CheckedCount(S().shapeChecks, kShapeCount), 1) << "after click " << click;
        EXPECT_TRUE(Checked(S().shapeChecks[expected]));
    }
    EXPECT_EQ(S().shape, 0);
}

TEST(NewPuzzleScreen, ZoomSliderSetsTheZoomAndStartsTheCountAgainFromTheMost) {
    NewPuzzleFixture f;
    f.AddPhotos(1);
    ASSERT_NE(f.Build(), nullptr);
    ClickSlot(S().slots[0]);
    ClickRadio(S().tabs[PAGE_SIZE]);
    EXPECT_EQ(Minimum(S().zoomSlider), 0);
    EXPECT_EQ(Maximum(S().zoomSlider), 100);
    MoveScroll(S().zoomSlider, 37);
    EXPECT_EQ(Position(S().zoomSlider), 37);  // steps of 1: any percentage can be reached
    EXPECT_EQ(GetZoomPercent(), 37);
    EXPECT_DOUBLE_EQ(g_puzzle.scale, ZoomAtPercent(g_choosers, 37));
    ExpectInStep();
    EXPECT_EQ(Position(S().countSlider), GetCountSteps());
}

TEST(NewPuzzleScreen, SizeChooserDragMovesTheZoomSliderAndTheCount) {
    NewPuzzleFixture f;
    f.AddPhotos(1);
    ASSERT_NE(f.Build(), nullptr);
    ClickSlot(S().slots[0]);
    ClickRadio(S().tabs[PAGE_SIZE]);
    int32_t before = Position(S().zoomSlider);
    ASSERT_TRUE(DragSizeChooser(g_puzzle.scale, -60, -40));
    Notify(S().sizeChooser, kChooserChanged);
    EXPECT_LT(Position(S().zoomSlider), before);
    ExpectInStep();
}

TEST(NewPuzzleScreen, CountChooserDragMovesTheCountSliderAndTheNumbers) {
    NewPuzzleFixture f;
    f.AddPhotos(1);
    ASSERT_NE(f.Build(), nullptr);
    ClickSlot(S().slots[0]);
    ClickRadio(S().tabs[PAGE_PIECES]);
    ASSERT_TRUE(DragCountChooser(g_choosers.piece_edge, 40, 40));
    int32_t zoom = Position(S().zoomSlider);
    Notify(S().countChooser, kChooserChanged);
    EXPECT_LT(Position(S().countSlider), GetCountSteps());
    EXPECT_EQ(Position(S().zoomSlider), zoom);
    ExpectInStep();
}

TEST(NewPuzzleScreen, CountSliderSetsRowsAndColumnsAndTheNumbers) {
    NewPuzzleFixture f;
    f.AddPhotos(1);
    ASSERT_NE(f.Build(), nullptr);
    ClickSlot(S().slots[0]);
    ClickRadio(S().tabs[PAGE_PIECES]);
    MoveScroll(S().countSlider, 3);
    PieceGrid grid = GridAtCountPosition(g_choosers.range, 3);
    EXPECT_EQ(g_puzzle.rows, grid.rows);
    EXPECT_EQ(g_puzzle.cols, grid.cols);
    ExpectNumbers(grid.rows, grid.cols);
    EXPECT_EQ(Position(S().countSlider), 3);
}

TEST(NewPuzzleScreen, FitAndActualSizeButtonsSetTheZoomAndRefreshTheSliders) {
    NewPuzzleFixture f;
    f.AddPhotos(1);
    ASSERT_NE(f.Build(), nullptr);
    ClickSlot(S().slots[0]);
    ClickRadio(S().tabs[PAGE_SIZE]);
    Notify(S().actualSizeButton);
    EXPECT_DOUBLE_EQ(g_puzzle.scale, 1.0);
    ExpectInStep();
    Notify(S().fitSizeButton);
    EXPECT_DOUBLE_EQ(g_puzzle.scale, g_choosers.zoom_fit);
    ExpectInStep();
}

TEST(NewPuzzleScreen, WithoutAChosenImageTheSlidersStandStill) {
    NewPuzzleFixture f;
    ASSERT_NE(f.Build(), nullptr);
    ClickRadio(S().tabs[PAGE_SIZE]);
    Notify(S().fitSizeButton);
    MoveScroll(S().zoomSlider, 80);
    EXPECT_FALSE(g_choosers.image_chosen);
    EXPECT_EQ(Position(S().countSlider), 0);
    EXPECT_EQ(Maximum(S().countSlider), 1);  // one count step while nothing is chosen
}

TEST(NewPuzzleScreen, StartCallsTheNewGameWithTheChosenShapeAndClosesThePanel) {
    NewPuzzleFixture f;
    ASSERT_NE(f.Build(), nullptr);
    ClickRadio(S().tabs[PAGE_SHAPE]);
    ClickRadio(S().shapeChecks[2]);
    Notify(S().startButton);
    EXPECT_EQ(g_startCalls, 1);
    EXPECT_EQ(g_startedShape, 2);
    EXPECT_FALSE(IsWindow(f.panel));
    EXPECT_EQ(S().panel, nullptr);
}

TEST(NewPuzzleScreen, CloseButtonClosesThePanelWithoutStarting) {
    NewPuzzleFixture f;
    ASSERT_NE(f.Build(), nullptr);
    Notify(S().closeButton);
    EXPECT_FALSE(IsWindow(f.panel));
    EXPECT_EQ(S().panel, nullptr);
    EXPECT_EQ(g_startCalls, 0);
}

TEST(NewPuzzleScreen, HelpButtonOpensTheHelpPage) {
    NewPuzzleFixture f;
    ASSERT_NE(f.Build(), nullptr);
    g_shellFiles.clear();
    g_shellExecute = RecordShell;
    Notify(S().helpButton);
    g_shellExecute = ShellExecuteExA;
    ASSERT_EQ(g_shellFiles.size(), 1u);
    EXPECT_EQ(g_shellFiles[0], f.folder.path + "Help\\1\\Index.htm");
    EXPECT_TRUE(IsWindow(f.panel));
}

TEST(NewPuzzleScreen, OpenCentresThePanelDisablesTheOwnerAndCloseEnablesItAgain) {
    NewPuzzleFixture f;
    TestWindow owner(0, 0, 40, 40);
    g_mainWindow = owner.hwnd;
    g_openNewPuzzleScreen = nullptr;
    InstallNewPuzzleScreen();
    ASSERT_NE(g_openNewPuzzleScreen, nullptr);
    g_openNewPuzzleScreen();  // what the title bar's button does
    f.panel = S().panel;
    ASSERT_NE(f.panel, nullptr);
    PumpMessages(30);
    EXPECT_EQ(OpenNewPuzzleScreen(), f.panel);  // one screen at a time
    RECT r = {};
    GetWindowRect(f.panel, &r);
    EXPECT_EQ(r.left, (1024 - 640) / 2);
    EXPECT_EQ(r.top, (768 - 300) / 2);
    EXPECT_EQ(r.right - r.left, 640);
    EXPECT_EQ(r.bottom - r.top, 300);
    EXPECT_EQ(GetWindow(f.panel, GW_OWNER), owner.hwnd);
    EXPECT_FALSE(IsWindowEnabled(owner.hwnd));
    Notify(S().closeButton);
    EXPECT_FALSE(IsWindow(f.panel));
    EXPECT_TRUE(IsWindowEnabled(owner.hwnd));
    g_openNewPuzzleScreen = nullptr;
}

TEST(NewPuzzleScreen, ASecondPanelIsRefusedWhileOneIsOpen) {
    NewPuzzleFixture f;
    ASSERT_NE(f.Build(), nullptr);
    HWND second = CreateWindowExA(0, kNewPuzzleClass, "", WS_POPUP, 0, 0, 640, 300, nullptr, nullptr,
                                  GetModuleHandleA(nullptr), nullptr);
    EXPECT_EQ(second, nullptr);
    EXPECT_EQ(S().panel, f.panel);
}

TEST(NewPuzzleScreen, ThePanelMovesWithAPressOnItsBackground) {
    NewPuzzleFixture f;
    ASSERT_NE(f.Build(), nullptr);
    SendMessageA(f.panel, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(10, 10));
    EXPECT_EQ(GetCapture(), f.panel);
    SendMessageA(f.panel, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(30, 25));
    RECT r = {};
    GetWindowRect(f.panel, &r);
    EXPECT_EQ(r.left, kPanelAt.x + 20);
    EXPECT_EQ(r.top, kPanelAt.y + 15);
    // The pointer now stands at (10, 10) of the moved panel: no further move.
    SendMessageA(f.panel, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(10, 10));
    GetWindowRect(f.panel, &r);
    EXPECT_EQ(r.left, kPanelAt.x + 20);
    SendMessageA(f.panel, WM_LBUTTONUP, 0, MAKELPARAM(10, 10));
    EXPECT_NE(GetCapture(), f.panel);
    SendMessageA(f.panel, WM_MOUSEMOVE, 0, MAKELPARAM(60, 60));
    GetWindowRect(f.panel, &r);
    EXPECT_EQ(r.left, kPanelAt.x + 20);
    EXPECT_EQ(r.top, kPanelAt.y + 15);
}

TEST(NewPuzzleScreen, ClosingReleasesEveryBlockItHeld) {
    NewPuzzleFixture f;
    f.UsePack();
    f.AddPhotos(5);
    size_t before = SysLiveBlocks();
    ASSERT_NE(f.Build(), nullptr);
    MoveScroll(S().imageScroll, -1);
    ClickRadio(S().tabs[PAGE_PIECES]);
    Notify(S().closeButton);
    EXPECT_FALSE(IsWindow(f.panel));
    EXPECT_EQ(SysLiveBlocks(), before);
}

// ---- With the real pointer ----

namespace {

// Under Wine without a window manager, a popup activated by a click loses the mouse capture when it
// moves and costs two seconds on destroy; the test panel answers clicks without activation instead.
WNDPROC g_panelProcedure = nullptr;
LRESULT CALLBACK InactivePanelProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_MOUSEACTIVATE) return MA_NOACTIVATE;
    return CallWindowProcA(g_panelProcedure, hwnd, message, wParam, lParam);
}

HWND BuildInactive(NewPuzzleFixture& f) {
    HWND panel = f.Build();
    if (panel)
        g_panelProcedure = reinterpret_cast<WNDPROC>(
            SetWindowLongPtrA(panel, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(InactivePanelProc)));
    return panel;
}

void ClickAt(HWND hwnd, int x, int y) {
    PointerToClient(hwnd, x, y);
    LeftDown();
    LeftUp();
}

}  // namespace

TEST(PointerNewPuzzle, ClickingTheTabOfThePageShownDoesNothing) {
    PointerLock lock;
    NewPuzzleFixture f;
    f.UsePack();
    f.AddPhotos(2);
    ASSERT_NE(BuildInactive(f), nullptr);
    ClickAt(S().tabs[PAGE_PICTURES], 60, 18);
    EXPECT_EQ(S().wipeStrips, 0u);
    ExpectOnlyPageShown(PAGE_PICTURES);
    // The same click on another tab does switch.
    ClickAt(S().tabs[PAGE_SHAPE], 60, 18);
    EXPECT_EQ(S().wipeStrips, 58u);
    ExpectOnlyPageShown(PAGE_SHAPE);
}

TEST(PointerNewPuzzle, ShapePictureClickedThreeTimesReturnsToTheFirstShape) {
    PointerLock lock;
    NewPuzzleFixture f;
    f.UsePack();
    ASSERT_NE(BuildInactive(f), nullptr);
    ClickAt(S().tabs[PAGE_SHAPE], 60, 18);
    ASSERT_EQ(S().page, PAGE_SHAPE);
    for (int click = 1; click <= 3; ++click) {
        ClickAt(S().shapePicture, 100, 70);
        EXPECT_EQ(S().shape, click % 3);
        EXPECT_EQ(CheckedCount(S().shapeChecks, kShapeCount), 1) << "after click " << click;
        EXPECT_TRUE(Checked(S().shapeChecks[click % 3]));
        // The picture shows the shape's frame on screen.
        const COLORREF frames[kShapeCount] = {RGB(250, 0, 0), RGB(0, 250, 0), RGB(0, 0, 250)};
        EXPECT_EQ(ClientPixel(S().shapePicture, 100, 70), frames[click % 3]);
    }
}

TEST(PointerNewPuzzle, ClickingAThumbnailChoosesItsImage) {
    PointerLock lock;
    NewPuzzleFixture f;
    f.UsePack();
    f.AddPhotos(3);
    ASSERT_NE(BuildInactive(f), nullptr);
    ClickAt(S().slots[2], 54, 63);
    EXPECT_EQ(S().selection, 2);
    EXPECT_TRUE(g_choosers.image_chosen);
    ExpectInStep();
    PumpMessages(30);
    EXPECT_EQ(ClientPixel(S().slots[2], 50, 23), kFrameColor);
}

TEST(PointerNewPuzzle, DraggingTheBackgroundMovesThePanel) {
    PointerLock lock;
    NewPuzzleFixture f;
    ASSERT_NE(BuildInactive(f), nullptr);
    PointerToClient(f.panel, 20, 150);
    LeftDown();
    POINT p = {0, 0};
    GetCursorPos(&p);
    PointerTo(p.x + 15, p.y + 5);
    PointerTo(p.x + 30, p.y + 10);
    LeftUp();
    RECT r = {};
    GetWindowRect(f.panel, &r);
    EXPECT_EQ(r.left, kPanelAt.x + 30);
    EXPECT_EQ(r.top, kPanelAt.y + 10);
}
