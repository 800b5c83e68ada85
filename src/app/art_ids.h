// Pack ids of every picture in Tavirel.rf, one named constant each. The artwork generator draws one
// item per entry (slots consecutive ids: six for pictures with words, chosen as base + language).
#pragma once

#include <cstdint>

#include "app/app_state.h"  // kLanguageCount: word-carrying pictures come in that many slots

// X(name, first id, slots)
#define TAVIREL_ART_IDS(X)                                                                              \
    /* Title window */                                                                                  \
    X(kArtExitButton, 112, 1)              /* command strip, top right */                               \
    X(kArtMinimiseButton, 119, 1)          /* command strip, left of the exit button */                 \
    X(kArtTitleBarTile, 122, 1)            /* 76 x 78, tiled to the right */                            \
    X(kArtAboutButton, 129, 1)             /* command strip */                                          \
    X(kArtNewPuzzleButton, 2060, 6)        /* command strip, words */                                   \
    X(kArtOpenPuzzleButton, 2070, 6)       /* command strip, words */                                   \
    X(kArtSavePuzzleButton, 2080, 6)       /* command strip, words */                                   \
    /* Main window */                                                                                   \
    X(kArtInfoButton, 244, 1)              /* command strip at the right edge */                        \
    X(kArtTrayEmptyButton, 200, 6)         /* side button of tray k, empty look */                      \
    X(kArtTrayFullButton, 600, 6)          /* side button of tray k, holding pieces */                  \
    X(kArtTrayCloseButton, 225, 1)         /* close of the preview and of each piece box */             \
    X(kArtTrayTile, 227, 1)                /* 30 x 31: preview title strip and piece-box backdrop */    \
    X(kArtTrayRenameButton, 228, 1)                                                                     \
    X(kArtMainFrameAcross, 332, 1)         /* walnut round the table, grain left to right, tiled */    \
    X(kArtMainFrameUpright, 333, 1)        /* the same wood with the grain running down, tiled */      \
    X(kArtGatherEdgesButton, 340, 1)       /* animated, eleven frames: ten as the others, then dimmed */ \
    X(kArtLanguageButton, 341, 1)          /* options panel, ours: opens the language chooser */         \
    X(kArtClothButton, 342, 1)             /* options panel, ours: opens the cloth chooser */            \
    /* Tool bar (left) and options bar (bottom) with their slide-out panels */                          \
    X(kArtToolsBarTile, 104, 1)                                                                         \
    X(kArtOptionsBarTile, 105, 1)                                                                       \
    X(kArtToolsPanelTile, 120, 1)                                                                       \
    X(kArtOptionsPanelTile, 123, 1)                                                                     \
    X(kArtToolsBarLabel, 2110, 6)          /* command strip, words running upwards */                   \
    X(kArtOptionsBarLabel, 2120, 6)        /* command strip, words */                                   \
    X(kArtAssembleButton, 127, 1)          /* animated buttons: ten 50 x 50 frames side by side */      \
    X(kArtHintButton, 117, 1)                                                                           \
    X(kArtMusicButton, 124, 1)                                                                          \
    X(kArtHonourButton, 113, 1)                                                                         \
    X(kArtHelpButton, 115, 1)                                                                           \
    X(kArtPreviewButton, 126, 1)                                                                        \
    X(kArtQuitButton, 128, 1)                                                                           \
    /* Message window: 148 and the heading are composed with the software blit (house palette) */       \
    X(kArtMessageFrame, 148, 1)                                                                         \
    X(kArtMessageHeading, 2150, 6)                                                                      \
    X(kArtMessageOkButton, 146, 1)                                                                      \
    X(kArtMessageCancelButton, 147, 1)                                                                  \
    /* Language chooser; 212 and 213 also serve the music window */                                     \
    X(kArtLanguagePanel, 304, 1)                                                                        \
    X(kArtDoneButton, 212, 1)              /* OK of the chooser, close of the music window */           \
    X(kArtStopButton, 213, 1)              /* cancel of the chooser, stop of the music window */        \
    /* New-puzzle screen */                                                                             \
    X(kArtNewPuzzlePanel, 2000, 6)         /* the panel backdrop with its title */                      \
    X(kArtNewPuzzleCloseButton, 315, 1)    /* also the close button of the saved-puzzle browser */      \
    X(kArtNewPuzzleHelpButton, 316, 1)                                                                  \
    X(kArtTabPictures, 2160, 6)            /* check strips of the four page tabs */                     \
    X(kArtTabSize, 2170, 6)                                                                             \
    X(kArtTabPieces, 2180, 6)                                                                           \
    X(kArtTabShape, 2190, 6)                                                                            \
    X(kArtShapeClassicCheck, 2200, 6)      /* check strips of the three shape styles */                 \
    X(kArtShapeDovetailCheck, 2210, 6)                                                                  \
    X(kArtShapeWaveCheck, 2220, 6)                                                                      \
    X(kArtFitSizeButton, 317, 1)           /* animated buttons */                                       \
    X(kArtActualSizeButton, 318, 1)                                                                     \
    X(kArtStartButton, 319, 1)                                                                          \
    X(kArtShapePicture, 320, 1)            /* one column of three frames: shape styles 0, 1, 2 */       \
    X(kArtSpinningPiece, 321, 1)           /* decorative animation, ten frames */                       \
    X(kArtZoomScroll, 322, 1)              /* scroll strips, zones 26 / 108 / 26 */                     \
    X(kArtCountScroll, 323, 1)                                                                          \
    X(kArtImageListScroll, 324, 1)         /* zones 26 / 76 / 26 */                                     \
    /* Saved-puzzle browser */                                                                          \
    X(kArtBrowserPanel, 325, 1)                                                                         \
    X(kArtBrowserOpenTitle, 2230, 6)                                                                    \
    X(kArtBrowserSaveTitle, 2240, 6)                                                                    \
    X(kArtBrowserOpenButton, 326, 1)                                                                    \
    X(kArtBrowserSaveButton, 327, 1)                                                                    \
    X(kArtBrowserDeleteButton, 330, 1)     /* animated button */                                        \
    X(kArtBrowserScroll, 331, 1)           /* zones 26 / 76 / 26 */                                     \
    X(kArtPanelHelpButton, 307, 1)         /* animated help button of the browser and the cloth chooser */ \
    /* Picture window, honour roll (160, 159 and the title share the house palette) */                  \
    X(kArtBackdropTile, 160, 1)                                                                         \
    X(kArtPictureFrame, 261, 1)                                                                         \
    X(kArtPrintButton, 260, 1)                                                                          \
    X(kArtCloseAnimButton, 300, 1)         /* the shared animated close button */                       \
    X(kArtHonourPanel, 159, 1)                                                                          \
    X(kArtHonourTitle, 2090, 6)                                                                         \
    X(kArtWipeButton, 158, 1)                                                                           \
    /* Printing */                                                                                      \
    X(kArtPrintHeader, 272, 1)                                                                          \
    X(kArtPrintFooter, 273, 1)                                                                          \
    X(kArtPrintWaitPanel, 301, 1)                                                                       \
    X(kArtProgressSquare, 302, 1)          /* 44 x 88: unlit, lit below */                              \
    /* Information screens */                                                                           \
    X(kArtGalleryPanel, 308, 1)                                                                         \
    X(kArtGalleryInfoButton, 309, 1)       /* animated buttons */                                       \
    X(kArtGalleryNextButton, 310, 1)                                                                    \
    X(kArtGalleryPreviousButton, 311, 1)                                                                \
    X(kArtInfoTextPanel, 312, 1)                                                                        \
    X(kArtInfoNextPageButton, 313, 1)      /* command strips */                                         \
    X(kArtInfoPreviousPageButton, 314, 1)                                                               \
    X(kArtImagePreviewTitle, 2130, 6)                                                                   \
    /* Music window */                                                                                  \
    X(kArtMusicPanel, 214, 1)              /* also the sliders' background */                           \
    X(kArtMusicTitle, 2100, 6)                                                                          \
    X(kArtMasterIndicator, 503, 1)         /* two frames stacked: idle, held */                         \
    X(kArtWaveIndicator, 504, 1)                                                                        \
    X(kArtDiscIndicator, 505, 1)                                                                        \
    X(kArtVolumeThumb, 507, 1)             /* thumb of both volume sliders */                           \
    X(kArtTrackButton, 510, 4)             /* tracks 1..4: ten glow frames, then the playing look */     \
    /* Video window, kind 0 */                                                                          \
    X(kArtVideoFrame, 166, 1)                                                                           \
    X(kArtVideoCloseButton, 163, 1)                                                                     \
    X(kArtVideoWebButton, 165, 1)                                                                       \
    X(kArtVideoReplayButton, 167, 1)                                                                    \
    /* Table-background chooser */                                                                      \
    X(kArtClothPanel, 305, 1)                                                                           \
    X(kArtClothPanelBadge, 306, 1)         /* copied onto the panel at (17, 10) */                      \
    X(kArtClothCloseButton, 131, 1)                                                                     \
    X(kArtClothPreview, 134, 1)            /* ten 100 x 100 frames in one column */                     \
    X(kArtClothScroll, 135, 1)             /* zones 37 / 83 / 39 */                                     \
    /* Puzzle */                                                                                        \
    X(kArtCutPattern, 5000, 3)             /* cut patterns of shape styles 0, 1, 2 */                   \
    X(kArtCloth, 6000, 10)                 /* table cloths, 100 x 100 tiles */

#define TAVIREL_ART_CONSTANT(name, id, slots) constexpr uint32_t name = id;
TAVIREL_ART_IDS(TAVIREL_ART_CONSTANT)
#undef TAVIREL_ART_CONSTANT

// Module resources of Tavirel.exe (not in the pack).
constexpr int kResHoverSound = 242;
constexpr int kResClickSound = 243;
constexpr int kResTrayCursor = 245;
constexpr int kResDragCursor = 246;
constexpr int kResNormalCursor = 247;
constexpr int kResAppIcon = 1;
constexpr int kResNoticeDialog = 564;
// String bases we add to the table, + language.
constexpr int kStrWebQuestion = 220;    // "visit the web site?" asked by the web button
constexpr int kStrMissingPack = 230;    // the pack cannot be opened
constexpr int kStrResumeQuestion = 240; // "continue the puzzle you left?" at start-up
constexpr int kStrPictureTitle = 5000;  // + picture number, no language offset
