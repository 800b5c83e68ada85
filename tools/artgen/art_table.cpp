// The pack item table. Sizes follow the screens' layouts: where a screen fixes a size it is used as
// given, elsewhere the size is ours and chosen to fit the controls placed over the picture.
#include "artgen/art_table.h"

#include "app/art_ids.h"

namespace {
constexpr ArtDepth R = ArtDepth::Rgb24;
constexpr ArtDepth H = ArtDepth::House8;
constexpr ArtDepth O = ArtDepth::Own8;
constexpr ArtLayout kWhole = ArtLayout::Whole;
constexpr ArtLayout kTile = ArtLayout::Tile;
constexpr ArtLayout kCmd = ArtLayout::Command;
constexpr ArtLayout kChk = ArtLayout::Check;
constexpr ArtLayout kAnim = ArtLayout::Anim;
constexpr ArtLayout kScroll = ArtLayout::Scroll;
}  // namespace

#define ANIM_BUTTON(id, name) {id, 1, name, 500, 50, R, kAnim, 1, 10, {0, 0, 0}}
// The same with an eleventh frame after the ten: the rest frame greyed, shown while it cannot be pressed.
#define ANIM_BUTTON_WITH_DISABLED(id, name) {id, 1, name, 550, 50, R, kAnim, 1, 11, {0, 0, 0}}
#define ONE(id, name, w, h, depth, layout) {id, 1, name, w, h, depth, layout, 1, 1, {0, 0, 0}}
#define WORDS(id, name, w, h, depth, layout) {id, 6, name, w, h, depth, layout, 1, 1, {0, 0, 0}}
#define SCROLL(id, name, w, z0, z1, z2) {id, 1, name, w, 3 * (z0 + z1 + z2), R, kScroll, 1, 1, {z0, z1, z2}}

const ArtEntry kArtTable[] = {
    ONE(kArtExitButton, "exit", 36, 108, R, kCmd),
    ONE(kArtMinimiseButton, "minimise", 36, 108, R, kCmd),
    ONE(kArtTitleBarTile, "title bar tile", 76, 78, R, kTile),
    ONE(kArtAboutButton, "about", 180, 156, R, kCmd),
    WORDS(kArtNewPuzzleButton, "new puzzle", 160, 168, R, kCmd),
    WORDS(kArtOpenPuzzleButton, "open puzzle", 88, 168, R, kCmd),
    WORDS(kArtSavePuzzleButton, "save puzzle", 88, 224, R, ArtLayout::CommandWithDisabled),
    ONE(kArtInfoButton, "info", 40, 120, R, kCmd),
    {kArtTrayEmptyButton, 6, "tray, empty", 50, 138, R, kCmd, 1, 1, {0, 0, 0}},
    {kArtTrayFullButton, 6, "tray, full", 50, 138, R, kCmd, 1, 1, {0, 0, 0}},
    ONE(kArtTrayCloseButton, "box close", 22, 66, R, kCmd),
    ONE(kArtTrayTile, "box tile", 30, 31, R, kTile),
    ONE(kArtTrayRenameButton, "box rename", 22, 66, R, kCmd),
    ONE(kArtMainFrameAcross, "main frame, across", 160, 64, R, kTile),
    ONE(kArtMainFrameUpright, "main frame, upright", 64, 160, R, kTile),
    ANIM_BUTTON_WITH_DISABLED(kArtGatherEdgesButton, "gather edges"),
    ANIM_BUTTON(kArtLanguageButton, "language"),
    ANIM_BUTTON(kArtClothButton, "cloth"),
    ONE(kArtToolsBarTile, "tools bar tile", 25, 139, R, kTile),
    ONE(kArtOptionsBarTile, "options bar tile", 103, 25, R, kTile),
    ONE(kArtToolsPanelTile, "tools panel tile", 98, 95, R, kTile),
    ONE(kArtOptionsPanelTile, "options panel tile", 103, 103, R, kTile),
    WORDS(kArtToolsBarLabel, "tools label", 25, 420, R, kCmd),
    WORDS(kArtOptionsBarLabel, "options label", 104, 75, R, kCmd),
    ANIM_BUTTON(kArtAssembleButton, "assemble"),
    ANIM_BUTTON(kArtHintButton, "hint"),
    ANIM_BUTTON(kArtMusicButton, "music"),
    ANIM_BUTTON(kArtHonourButton, "honour roll"),
    ANIM_BUTTON(kArtHelpButton, "help"),
    ANIM_BUTTON(kArtPreviewButton, "preview"),
    ANIM_BUTTON(kArtQuitButton, "quit"),
    ONE(kArtMessageFrame, "message frame", 500, 300, H, kWhole),
    WORDS(kArtMessageHeading, "message heading", 474, 46, H, kWhole),
    ONE(kArtMessageOkButton, "message OK", 72, 108, R, kCmd),
    ONE(kArtMessageCancelButton, "message cancel", 72, 108, R, kCmd),
    ONE(kArtLanguagePanel, "language panel", 300, 300, R, kWhole),
    ONE(kArtDoneButton, "done", 120, 120, R, kCmd),
    ONE(kArtStopButton, "stop", 120, 120, R, kCmd),
    WORDS(kArtNewPuzzlePanel, "new-puzzle panel", 640, 300, R, kWhole),
    ONE(kArtNewPuzzleCloseButton, "panel close", 40, 120, R, kCmd),
    ONE(kArtNewPuzzleHelpButton, "panel help", 40, 120, R, kCmd),
    WORDS(kArtTabPictures, "tab pictures", 120, 144, R, kChk),
    WORDS(kArtTabSize, "tab size", 120, 144, R, kChk),
    WORDS(kArtTabPieces, "tab pieces", 120, 144, R, kChk),
    WORDS(kArtTabShape, "tab shape", 120, 144, R, kChk),
    WORDS(kArtShapeClassicCheck, "shape classic", 150, 128, R, kChk),
    WORDS(kArtShapeDovetailCheck, "shape dovetail", 150, 128, R, kChk),
    WORDS(kArtShapeWaveCheck, "shape wave", 150, 128, R, kChk),
    ANIM_BUTTON(kArtFitSizeButton, "fit size"),
    ANIM_BUTTON(kArtActualSizeButton, "actual size"),
    ANIM_BUTTON(kArtStartButton, "start"),
    {kArtShapePicture, 1, "shape picture", 200, 420, R, kAnim, 3, 1, {0, 0, 0}},
    ANIM_BUTTON(kArtSpinningPiece, "spinning piece"),
    SCROLL(kArtZoomScroll, "zoom scroll", 30, 26, 108, 26),
    SCROLL(kArtCountScroll, "count scroll", 30, 26, 108, 26),
    SCROLL(kArtImageListScroll, "image scroll", 30, 26, 76, 26),
    ONE(kArtBrowserPanel, "browser panel", 640, 300, R, kWhole),
    WORDS(kArtBrowserOpenTitle, "browser open title", 300, 40, R, kWhole),
    WORDS(kArtBrowserSaveTitle, "browser save title", 300, 40, R, kWhole),
    ONE(kArtBrowserOpenButton, "browser open", 40, 120, R, kCmd),
    ONE(kArtBrowserSaveButton, "browser save", 40, 120, R, kCmd),
    ANIM_BUTTON(kArtBrowserDeleteButton, "browser delete"),
    SCROLL(kArtBrowserScroll, "browser scroll", 30, 26, 76, 26),
    ANIM_BUTTON(kArtPanelHelpButton, "panel help anim"),
    ONE(kArtBackdropTile, "backdrop tile", 80, 80, H, kTile),
    ONE(kArtPictureFrame, "picture frame", 800, 600, R, kWhole),
    ANIM_BUTTON(kArtPrintButton, "print"),
    ANIM_BUTTON(kArtCloseAnimButton, "close (animated)"),
    ONE(kArtHonourPanel, "honour panel", 640, 480, H, kWhole),
    WORDS(kArtHonourTitle, "honour title", 400, 56, H, kWhole),
    ANIM_BUTTON(kArtWipeButton, "wipe records"),
    ONE(kArtPrintHeader, "print header", 1496, 243, R, kWhole),
    ONE(kArtPrintFooter, "print footer", 1496, 228, R, kWhole),
    ONE(kArtPrintWaitPanel, "print wait panel", 494, 320, R, kWhole),
    {kArtProgressSquare, 1, "progress square", 44, 88, R, kAnim, 2, 1, {0, 0, 0}},
    ONE(kArtGalleryPanel, "gallery panel", 800, 600, R, kWhole),
    ANIM_BUTTON(kArtGalleryInfoButton, "gallery info"),
    ANIM_BUTTON(kArtGalleryNextButton, "gallery next"),
    ANIM_BUTTON(kArtGalleryPreviousButton, "gallery previous"),
    ONE(kArtInfoTextPanel, "info text panel", 800, 600, R, kWhole),
    ONE(kArtInfoNextPageButton, "info next page", 60, 108, R, kCmd),
    ONE(kArtInfoPreviousPageButton, "info previous page", 60, 108, R, kCmd),
    WORDS(kArtImagePreviewTitle, "preview title", 300, 40, R, kWhole),
    ONE(kArtMusicPanel, "music panel", 420, 300, R, kWhole),
    WORDS(kArtMusicTitle, "music title", 300, 40, R, kWhole),
    {kArtMasterIndicator, 1, "master indicator", 30, 60, R, kAnim, 2, 1, {0, 0, 0}},
    {kArtWaveIndicator, 1, "wave indicator", 30, 60, R, kAnim, 2, 1, {0, 0, 0}},
    {kArtDiscIndicator, 1, "disc indicator", 30, 60, R, kAnim, 2, 1, {0, 0, 0}},
    ONE(kArtVolumeThumb, "volume thumb", 36, 20, R, kWhole),
    {kArtTrackButton, 4, "track", 550, 50, R, kAnim, 1, 11, {0, 0, 0}},
    ONE(kArtVideoFrame, "video frame", 440, 470, R, kWhole),
    ONE(kArtVideoCloseButton, "video close", 90, 108, R, kCmd),
    ONE(kArtVideoWebButton, "video web", 90, 108, R, kCmd),
    ONE(kArtVideoReplayButton, "video replay", 100, 108, R, kCmd),
    ONE(kArtClothPanel, "cloth panel", 420, 300, R, kWhole),
    ONE(kArtClothPanelBadge, "cloth badge", 200, 44, R, kWhole),
    ONE(kArtClothCloseButton, "cloth close", 90, 108, R, kCmd),
    {kArtClothPreview, 1, "cloth preview", 100, 1000, R, kAnim, 10, 1, {0, 0, 0}},
    SCROLL(kArtClothScroll, "cloth scroll", 30, 37, 83, 39),
    {kArtCutPattern, 3, "cut pattern", 532, 532, O, ArtLayout::Pattern, 1, 1, {0, 0, 0}},
    {kArtCloth, 10, "cloth", 100, 100, O, kTile, 1, 1, {0, 0, 0}},
};
const int kArtTableSize = int(sizeof kArtTable / sizeof kArtTable[0]);

int ArtVerticalFrames(const ArtEntry& entry) {
    switch (entry.layout) {
    case ArtLayout::Command: return 3;
    case ArtLayout::CommandWithDisabled: return 4;
    case ArtLayout::Check: return 4;
    case ArtLayout::Scroll: return 3;
    case ArtLayout::Anim: return entry.rows;
    default: return 1;
    }
}

const ArtEntry* FindArtEntry(uint32_t id) {
    for (int i = 0; i < kArtTableSize; ++i)
        if (id >= kArtTable[i].id && id < kArtTable[i].id + uint32_t(kArtTable[i].slots)) return &kArtTable[i];
    return nullptr;
}
