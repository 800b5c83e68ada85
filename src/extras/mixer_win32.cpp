// The mixer calls behind the music window's sliders.
#include "extras/mixer_win32.h"

#include "extras/mixer_rules.h"

HMIXER g_mixer;

namespace {

// The controls found by type while the mixer is open. A control is looked up here before it is asked
// for by id: Wine answers a lookup by id with another control (id 0 gives the wave fader, id 2 fails),
// and a control's bounds and steps never change while the mixer is open.
constexpr int kKnownControlCapacity = 8;
MIXERCONTROLA g_knownControls[kKnownControlCapacity];
int g_knownControlCount;

void RememberControl(const MIXERCONTROLA& control) {
    for (int i = 0; i < g_knownControlCount; ++i)
        if (g_knownControls[i].dwControlID == control.dwControlID) return;
    if (g_knownControlCount < kKnownControlCapacity) g_knownControls[g_knownControlCount++] = control;
}

HMIXEROBJ MixerObject() { return reinterpret_cast<HMIXEROBJ>(g_mixer); }

bool IsFader(const MIXERCONTROLA& control) {
    return (control.dwControlType & MIXERCONTROL_CT_CLASS_MASK) == MIXERCONTROL_CT_CLASS_FADER;
}

bool ControlById(DWORD controlId, MIXERCONTROLA* control) {
    if (!g_mixer) return false;
    for (int i = 0; i < g_knownControlCount; ++i) {
        if (g_knownControls[i].dwControlID == controlId) {
            *control = g_knownControls[i];
            return true;
        }
    }
    MIXERLINECONTROLSA query = {};
    query.cbStruct = sizeof query;
    query.dwControlID = controlId;
    query.cControls = 1;
    query.cbmxctrl = sizeof *control;
    query.pamxctrl = control;
    if (mixerGetLineControlsA(MixerObject(), &query, MIXER_GETLINECONTROLSF_ONEBYID | MIXER_OBJECTF_HMIXER) !=
        MMSYSERR_NOERROR)
        return false;
    control->dwControlID = controlId;
    return true;
}

// One channel, one unsigned value; a multiple-item control names its item count.
// The details of the control as asked for by its id.
MIXERCONTROLDETAILS DetailsFor(const MIXERCONTROLA& control, MIXERCONTROLDETAILS_UNSIGNED* value) {
    MIXERCONTROLDETAILS details = {};
    details.cbStruct = sizeof details;
    details.dwControlID = control.dwControlID;
    details.cChannels = 1;
    details.cMultipleItems = (control.fdwControl & MIXERCONTROL_CONTROLF_MULTIPLE) ? control.cMultipleItems : 0;
    details.cbDetails = sizeof *value;
    details.paDetails = value;
    return details;
}

}  // namespace

bool OpenMixer(HWND callback) {
    if (mixerGetNumDevs() == 0) return false;
    HMIXER mixer = nullptr;
    DWORD_PTR target = reinterpret_cast<DWORD_PTR>(callback);
    if (mixerOpen(&mixer, 0, target, 0, callback ? CALLBACK_WINDOW : 0) != MMSYSERR_NOERROR) return false;
    g_mixer = mixer;
    return true;
}

void CloseMixer() {
    if (g_mixer) mixerClose(g_mixer);
    g_mixer = nullptr;
    g_knownControlCount = 0;
}

bool MixerLineId(DWORD componentType, DWORD* lineId) {
    if (!g_mixer) return false;
    MIXERLINEA line = {};
    line.cbStruct = sizeof line;
    line.dwComponentType = componentType;
    if (mixerGetLineInfoA(MixerObject(), &line, MIXER_GETLINEINFOF_COMPONENTTYPE | MIXER_OBJECTF_HMIXER) !=
        MMSYSERR_NOERROR)
        return false;
    *lineId = line.dwLineID;
    return true;
}

DWORD MixerControlId(DWORD lineId, DWORD controlType) {
    if (!g_mixer) return 0;
    MIXERCONTROLA control = {};
    MIXERLINECONTROLSA query = {};
    query.cbStruct = sizeof query;
    query.dwLineID = lineId;
    query.dwControlType = controlType;
    query.cControls = 1;
    query.cbmxctrl = sizeof control;
    query.pamxctrl = &control;
    control.cbStruct = sizeof control;
    if (mixerGetLineControlsA(MixerObject(), &query, MIXER_GETLINECONTROLSF_ONEBYTYPE | MIXER_OBJECTF_HMIXER) !=
        MMSYSERR_NOERROR)
        return 0;
    RememberControl(control);
    return control.dwControlID;
}

DWORD VolumeControlOf(DWORD componentType) {
    DWORD lineId = 0;
    return MixerLineId(componentType, &lineId) ? MixerControlId(lineId, MIXERCONTROL_CONTROLTYPE_VOLUME) : 0;
}

bool ReadMixerPercent(DWORD controlId, uint32_t* percent) {
    MIXERCONTROLA control = {};
    control.cbStruct = sizeof control;
    if (!ControlById(controlId, &control) || !IsFader(control)) return false;
    const uint32_t minimum = control.Bounds.dwMinimum, maximum = control.Bounds.dwMaximum;
    if (minimum >= maximum) {
        *percent = 50;
        return true;
    }
    MIXERCONTROLDETAILS_UNSIGNED value = {};
    MIXERCONTROLDETAILS details = DetailsFor(control, &value);
    if (mixerGetControlDetailsA(MixerObject(), &details, MIXER_GETCONTROLDETAILSF_VALUE | MIXER_OBJECTF_HMIXER) !=
        MMSYSERR_NOERROR)
        return false;
    *percent = PercentOfMixerValue(value.dwValue, minimum, maximum);
    return true;
}

bool WriteMixerPercent(DWORD controlId, int32_t percent) {
    if (percent < 0 || percent > 100) return false;
    MIXERCONTROLA control = {};
    control.cbStruct = sizeof control;
    if (!ControlById(controlId, &control) || !IsFader(control)) return false;
    uint32_t raw = 0;
    if (!MixerValueOfPercent(percent, control.Bounds.dwMinimum, control.Bounds.dwMaximum, control.Metrics.cSteps, &raw))
        return false;
    MIXERCONTROLDETAILS_UNSIGNED value = {};
    value.dwValue = raw;
    MIXERCONTROLDETAILS details = DetailsFor(control, &value);
    return mixerSetControlDetails(MixerObject(), &details, MIXER_SETCONTROLDETAILSF_VALUE | MIXER_OBJECTF_HMIXER) ==
           MMSYSERR_NOERROR;
}
