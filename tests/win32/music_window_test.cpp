// The music window: its size and place, the track buttons and the look of the playing one, stop and
// close, the press indicators, and the two sliders bound to the mixer both ways.
#include <gtest/gtest.h>
#include <windows.h>

#include <mmsystem.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "app/app_state.h"
#include "app/app_win32.h"
#include "app/art_ids.h"
#include "controls/animated_button_win32.h"
#include "controls/control_messages.h"
#include "extras/mixer_rules.h"
#include "extras/mixer_win32.h"
#include "extras/music_win32.h"
#include "extras/music_window_win32.h"
#include "gfx/dib.h"
#include "gfx/pack.h"
#include "message_log_win32.h"
#include "win32_support.h"

#ifndef TAVIREL_MUSIC_DIR
#error "the build passes the folder of the game's own music"
#endif

namespace {

constexpr int32_t kPanelW = 420, kPanelH = 300;

int32_t FrameOf(HWND button) { return int32_t(SendMessageA(button, PM_ANIM_GETFRAME, 0, 0)); }
int32_t ValueOf(HWND slider) { return int32_t(SendMessageA(slider, PM_SLD_GETVALUE, 0, 0)); }

// Another program's hand on the mixer: its own handle on the speakers' fader, no notice to anyone.
struct OtherSpeakers {
    HMIXER mixer = nullptr;
    MIXERCONTROLA control = {};
    bool ok = false;
    OtherSpeakers() {
        if (mixerOpen(&mixer, 0, 0, 0, 0) != MMSYSERR_NOERROR) return;
        MIXERLINEA line = {};
        line.cbStruct = sizeof line;
        line.dwComponentType = kSpeakersLine;
        MIXERLINECONTROLSA query = {};
        query.cbStruct = sizeof query;
        query.dwControlType = MIXERCONTROL_CONTROLTYPE_VOLUME;
        query.cControls = 1;
        query.cbmxctrl = sizeof control;
        query.pamxctrl = &control;
        ok = mixerGetLineInfoA(HMIXEROBJ(mixer), &line, MIXER_GETLINEINFOF_COMPONENTTYPE | MIXER_OBJECTF_HMIXER) == 0;
        query.dwLineID = line.dwLineID;
        ok = ok && mixerGetLineControlsA(HMIXEROBJ(mixer), &query,
                                         MIXER_GETLINECONTROLSF_ONEBYTYPE | MIXER_OBJECTF_HMIXER) == 0;
    }
    ~OtherSpeakers() {
        if (mixer) mixerClose(mixer);
    }
    MIXERCONTROLDETAILS Details(MIXERCONTROLDETAILS_UNSIGNED* value) const {
        MIXERCONTROLDETAILS details = {};
        details.cbStruct = sizeof details;
        details.dwControlID = control.dwControlID;
        details.cChannels = 1;
        details.cbDetails = sizeof *value;
        details.paDetails = value;
        return details;
    }
};

bool SetSpeakersFromElsewhere(uint32_t raw) {
    OtherSpeakers other;
    MIXERCONTROLDETAILS_UNSIGNED value = {};
    value.dwValue = raw;
    MIXERCONTROLDETAILS details = other.Details(&value);
    return other.ok &&
           mixerSetControlDetails(HMIXEROBJ(other.mixer), &details, MIXER_SETCONTROLDETAILSF_VALUE | MIXER_OBJECTF_HMIXER) == 0;
}

bool ReadSpeakersRaw(uint32_t* raw, uint32_t* steps) {
    OtherSpeakers other;
    MIXERCONTROLDETAILS_UNSIGNED value = {};
    MIXERCONTROLDETAILS details = other.Details(&value);
    const bool ok = other.ok && mixerGetControlDetailsA(HMIXEROBJ(other.mixer), &details,
                                                        MIXER_GETCONTROLDETAILSF_VALUE | MIXER_OBJECTF_HMIXER) == 0;
    *raw = value.dwValue;
    *steps = other.control.Metrics.cSteps;
    return ok;
}

struct MusicWindowFixture : ::testing::Test {
    TempFolder folder;
    TestWindow main{0, 0, 200, 200};
    char savedFolder[kPathCapacity];
    std::vector<uint8_t*> art;
    HWND music = nullptr;
    NoActivation quiet;

    void SetUp() override {
        std::memcpy(savedFolder, g_appFolder, sizeof savedFolder);
        std::string pieces = TAVIREL_MUSIC_DIR;
        pieces.resize(pieces.size() - std::strlen("Music"));
        std::snprintf(g_appFolder, sizeof g_appFolder, "%s", pieces.c_str());
        static bool registered = false;
        if (!registered) {
            EnsureControlClasses();
            RegisterMusicWindowClass(GetModuleHandleA(nullptr));
            registered = true;
        }
        g_screenWidth = GetSystemMetrics(SM_CXSCREEN);
        g_screenHeight = GetSystemMetrics(SM_CYSCREEN);
        g_language = kEnglish;
        g_mainWindow = main.hwnd;
        g_musicTrack = 0;
        auto add = [&](uint8_t* dib) {
            art.push_back(dib);
            return dib;
        };
        std::vector<std::pair<uint32_t, const uint8_t*>> items = {
            {kArtMusicPanel, add(MakeDib24(kPanelW, kPanelH, [](int, int) { return RGB(230, 220, 190); }))},
            {kArtMusicTitle + kEnglish, add(MakeDib24(300, 40, [](int, int) { return RGB(120, 90, 40); }))},
            {kArtMasterIndicator, add(MakeDib24(30, 60, [](int, int y) { return y < 30 ? RGB(10, 10, 10) : RGB(250, 200, 0); }))},
            {kArtWaveIndicator, add(MakeDib24(30, 60, [](int, int y) { return y < 30 ? RGB(10, 10, 10) : RGB(0, 250, 90); }))},
            {kArtDiscIndicator, add(MakeDib24(30, 60, [](int, int y) { return y < 30 ? RGB(10, 10, 10) : RGB(0, 90, 250); }))},
            {kArtVolumeThumb, add(MakeDib24(36, 20, [](int, int) { return RGB(200, 160, 60); }))},
            {kArtDoneButton, add(MakeDib24(120, 120, [](int, int) { return RGB(90, 60, 30); }))},
            {kArtStopButton, add(MakeDib24(120, 120, [](int, int) { return RGB(60, 30, 90); }))},
        };
        for (int t = 0; t < kMusicTrackCount; ++t)
            items.push_back({kArtTrackButton + uint32_t(t),
                             add(MakeDib24(550, 50, [t](int x, int) { return RGB(20 * t, x / 50 * 20, 100); }))});
        std::string pack = folder.File("Tavirel.rf");
        ASSERT_TRUE(WriteTestPack(pack, items));
        ASSERT_TRUE(OpenPack(&g_pack, pack.c_str()));
    }

    void TearDown() override {
        if (HWND left = CurrentMusicWindow()) DestroyWindow(left);
        StopMusic();
        PumpMessages(50);
        ClosePack(&g_pack);
        for (uint8_t* dib : art) FreePackedDib(dib);
        g_mainWindow = nullptr;
        std::memcpy(g_appFolder, savedFolder, sizeof savedFolder);
    }

    const MusicWindowParts* Parts() { return MusicWindowPartsOf(music); }
    void Click(HWND control) { SendMessageA(music, PM_NOTIFY, NOTIFY_CLICKED, LPARAM(control)); }
    void Open() {
        music = OpenMusicWindow();
        ASSERT_NE(music, nullptr);
        ASSERT_NE(Parts(), nullptr);
    }
};

}  // namespace

TEST_F(MusicWindowFixture, OpensCentredWithThePanelAsItsClientAndDisablesTheMainWindow) {
    Open();
    RECT client;
    GetClientRect(music, &client);
    EXPECT_EQ(client.right, kPanelW);
    EXPECT_EQ(client.bottom, kPanelH);
    RECT outer;
    GetWindowRect(music, &outer);
    EXPECT_NEAR((outer.left + outer.right) / 2, g_screenWidth / 2, 1);
    EXPECT_NEAR((outer.top + outer.bottom) / 2, g_screenHeight / 2, 1);
    EXPECT_EQ(GetWindowLongA(music, GWL_STYLE) & (WS_POPUP | WS_DLGFRAME), LONG(WS_POPUP | WS_DLGFRAME));
    EXPECT_EQ(GetWindow(music, GW_OWNER), main.hwnd);
    EXPECT_FALSE(IsWindowEnabled(main.hwnd));
    EXPECT_EQ(OpenMusicWindow(), music);  // a second press finds the one open
    SendMessageA(music, WM_CLOSE, 0, 0);
    EXPECT_FALSE(IsWindow(music));
    EXPECT_TRUE(IsWindowEnabled(main.hwnd));
}

TEST_F(MusicWindowFixture, OpeningAndClosingNeverStartsTheMusic) {
    Open();
    PumpMessages(100);
    EXPECT_EQ(g_musicDevice, 0u);
    for (HWND button : Parts()->trackButtons) EXPECT_EQ(FrameOf(button), kButtonRestFrame);
    Click(Parts()->closeButton);
    ASSERT_TRUE(PumpUntil([&] { return !IsWindow(music); }, 2000));
    EXPECT_EQ(g_musicDevice, 0u);
}

TEST_F(MusicWindowFixture, ATrackButtonPlaysItsPieceAndShowsThePlayingLook) {
    Open();
    Click(Parts()->trackButtons[1]);
    EXPECT_NE(g_musicDevice, 0u);
    EXPECT_EQ(g_musicTrack, 2);
    EXPECT_EQ(FrameOf(Parts()->trackButtons[1]), kTrackSelectedFrame);
    Click(Parts()->trackButtons[3]);
    EXPECT_EQ(g_musicTrack, 4);
    EXPECT_EQ(FrameOf(Parts()->trackButtons[1]), kButtonRestFrame);
    EXPECT_EQ(FrameOf(Parts()->trackButtons[3]), kTrackSelectedFrame);
    // The playing look stays while the pointer passes over it.
    SendMessageA(music, PM_NOTIFY, NOTIFY_ENTERED, LPARAM(Parts()->trackButtons[3]));
    PumpMessages(200);
    EXPECT_EQ(FrameOf(Parts()->trackButtons[3]), kTrackSelectedFrame);
}

TEST_F(MusicWindowFixture, ChoosingTheTrackThatIsPlayingDoesNotRestartIt) {
    Open();
    Click(Parts()->trackButtons[0]);
    const UINT device = g_musicDevice;
    ASSERT_NE(device, 0u);
    MCI_STATUS_PARMS status = {};
    status.dwItem = MCI_STATUS_POSITION;
    ASSERT_TRUE(PumpUntil([&] {
        mciSendCommandA(g_musicDevice, MCI_STATUS, MCI_STATUS_ITEM | MCI_WAIT, DWORD_PTR(&status));
        return status.dwReturn > 600;
    }, 5000));
    Click(Parts()->trackButtons[0]);
    EXPECT_EQ(g_musicDevice, device);
    mciSendCommandA(g_musicDevice, MCI_STATUS, MCI_STATUS_ITEM | MCI_WAIT, DWORD_PTR(&status));
    EXPECT_GT(status.dwReturn, 600u);
}

TEST_F(MusicWindowFixture, TheWindowReopensShowingTheTrackThatPlays) {
    Open();
    Click(Parts()->trackButtons[2]);
    Click(Parts()->closeButton);
    ASSERT_TRUE(PumpUntil([&] { return !IsWindow(music); }, 2000));
    EXPECT_NE(g_musicDevice, 0u);  // closing lets the music go on
    Open();
    EXPECT_EQ(FrameOf(Parts()->trackButtons[2]), kTrackSelectedFrame);
}

TEST_F(MusicWindowFixture, StopEndsTheMusicClosesAndLetsTheSameTrackStartAgain) {
    Open();
    Click(Parts()->trackButtons[0]);
    Click(Parts()->stopButton);
    ASSERT_TRUE(PumpUntil([&] { return !IsWindow(music); }, 2000));
    EXPECT_EQ(g_musicDevice, 0u);
    PauseMusic();
    ResumeMusic();
    EXPECT_EQ(g_musicDevice, 0u);
    Open();
    EXPECT_EQ(FrameOf(Parts()->trackButtons[0]), kButtonRestFrame);
    Click(Parts()->trackButtons[0]);
    EXPECT_NE(g_musicDevice, 0u);
}

TEST_F(MusicWindowFixture, HoldingASliderLightsItsIndicatorUntilReleased) {
    Open();
    for (int k = 0; k < 2; ++k) {
        HWND slider = Parts()->sliders[k];
        ASSERT_NE(slider, nullptr);
        SendMessageA(music, PM_NOTIFY, NOTIFY_PRESSED, LPARAM(slider));
        EXPECT_EQ(MusicIndicatorFrame(music, k), 1);
        EXPECT_EQ(Parts()->held, 1);
        SendMessageA(music, PM_NOTIFY, NOTIFY_RELEASED, LPARAM(slider));
        EXPECT_EQ(MusicIndicatorFrame(music, k), 0);
        EXPECT_EQ(Parts()->held, 0);
    }
    EXPECT_EQ(MusicIndicatorFrame(music, 2), 0);
}

TEST_F(MusicWindowFixture, SlidersRunUpFromTheBottomOverTheirTracks) {
    Open();
    for (int k = 0; k < 2; ++k) {
        HWND slider = Parts()->sliders[k];
        ASSERT_NE(slider, nullptr);
        EXPECT_EQ(SendMessageA(slider, PM_SLD_GETMINIMUM, 0, 0), 0);
        EXPECT_EQ(SendMessageA(slider, PM_SLD_GETMAXIMUM, 0, 0), kVolumeSliderTop);
        RECT at;
        GetWindowRect(slider, &at);
        POINT corner = {at.left, at.top};
        ScreenToClient(music, &corner);
        EXPECT_EQ(corner.x, k == 0 ? kMasterSliderX : kWaveSliderX);
        EXPECT_EQ(corner.y, kSliderTopY);
        const LRESULT start = SendMessageA(slider, PM_SLD_GETLINESTART, 0, 0);
        EXPECT_EQ(int16_t(HIWORD(start)), kSliderBottomY - kSliderTopY);  // no volume at the bottom
    }
}

// The mixer tests need Wine's mixer, which the test runner's audio server gives it.
TEST_F(MusicWindowFixture, MixerSliderSetToThirtySetsTheSpeakersVolumeTheMixerThenReports) {
    ASSERT_GT(mixerGetNumDevs(), 0u) << "no mixer: the audio server is not running";
    Open();
    HWND master = Parts()->sliders[0];
    SendMessageA(master, PM_SLD_SETVALUE, 0, 30);
    SendMessageA(music, PM_NOTIFY, NOTIFY_PRESSED, LPARAM(master));
    SendMessageA(music, PM_NOTIFY, NOTIFY_CLICKED, LPARAM(master));
    SendMessageA(music, PM_NOTIFY, NOTIFY_RELEASED, LPARAM(master));
    uint32_t raw = 0, steps = 0;
    ASSERT_TRUE(ReadSpeakersRaw(&raw, &steps));
    uint32_t expected = 0;
    ASSERT_TRUE(MixerValueOfPercent(30, 0, 65535, steps, &expected));
    EXPECT_EQ(raw, expected);
    uint32_t percent = 0;
    ASSERT_TRUE(ReadMixerPercent(Parts()->volumeControls[0], &percent));
    EXPECT_EQ(percent, PercentOfMixerValue(expected, 0, 65535));
}

TEST_F(MusicWindowFixture, MixerVolumeChangedElsewhereMovesTheSlider) {
    ASSERT_GT(mixerGetNumDevs(), 0u) << "no mixer: the audio server is not running";
    ASSERT_TRUE(SetSpeakersFromElsewhere(32768));
    Open();
    HWND master = Parts()->sliders[0];
    EXPECT_EQ(ValueOf(master), 50);
    ASSERT_TRUE(SetSpeakersFromElsewhere(13107));  // 20 %
    // Windows tells the window; Wine tells no one, so the window looks for itself.
    SendMessageA(music, MM_MIXM_CONTROL_CHANGE, 0, LPARAM(Parts()->volumeControls[0]));
    EXPECT_EQ(ValueOf(master), 20);
    ASSERT_TRUE(SetSpeakersFromElsewhere(45874));  // 70 %
    EXPECT_TRUE(PumpUntil([&] { return ValueOf(master) == 69 || ValueOf(master) == 70; }, 2000));
}

TEST_F(MusicWindowFixture, MixerChangesWaitWhileTheSliderIsHeld) {
    ASSERT_GT(mixerGetNumDevs(), 0u) << "no mixer: the audio server is not running";
    ASSERT_TRUE(SetSpeakersFromElsewhere(32768));
    Open();
    HWND master = Parts()->sliders[0];
    SendMessageA(music, PM_NOTIFY, NOTIFY_PRESSED, LPARAM(master));
    ASSERT_TRUE(SetSpeakersFromElsewhere(6554));  // 10 %
    SendMessageA(music, MM_MIXM_CONTROL_CHANGE, 0, LPARAM(Parts()->volumeControls[0]));
    PumpMessages(400);
    EXPECT_EQ(ValueOf(master), 50);
    SendMessageA(music, PM_NOTIFY, NOTIFY_RELEASED, LPARAM(master));
    SendMessageA(music, MM_MIXM_CONTROL_CHANGE, 0, LPARAM(Parts()->volumeControls[0]));
    EXPECT_EQ(ValueOf(master), 10);
}

TEST_F(MusicWindowFixture, MixerAtAHundredPercentShowsNinetyNine) {
    ASSERT_GT(mixerGetNumDevs(), 0u) << "no mixer: the audio server is not running";
    ASSERT_TRUE(SetSpeakersFromElsewhere(65535));
    Open();
    EXPECT_EQ(ValueOf(Parts()->sliders[0]), 99);
}

// Wine has no compact-disc line: its control is missing, and its changes reach no slider.
TEST_F(MusicWindowFixture, MixerWithoutACompactDiscLineLeavesItsSlotEmpty) {
    ASSERT_GT(mixerGetNumDevs(), 0u) << "no mixer: the audio server is not running";
    Open();
    EXPECT_EQ(Parts()->sliders[2], nullptr);
    DWORD line = 0;
    EXPECT_FALSE(MixerLineId(kCompactDiscLine, &line));
}
