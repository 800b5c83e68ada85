// The system mixer as the music window uses it: device 0, the volume faders of three lines, read and
// written as percents. Every failure is silent: a missing line leaves its control id 0.
#pragma once

#include <windows.h>

#include <mmsystem.h>

#include <cstdint>

// Component types of the three lines whose volume the window follows.
constexpr DWORD kSpeakersLine = MIXERLINE_COMPONENTTYPE_DST_SPEAKERS;       // 4
constexpr DWORD kWaveOutLine = MIXERLINE_COMPONENTTYPE_SRC_WAVEOUT;         // 4104
constexpr DWORD kCompactDiscLine = MIXERLINE_COMPONENTTYPE_SRC_COMPACTDISC; // 4101

extern HMIXER g_mixer;  // null while closed

// Opens mixer device 0; its change notices (MM_MIXM_CONTROL_CHANGE) go to `callback` when given.
bool OpenMixer(HWND callback);
void CloseMixer();
// The id of the line of a component type (ids may be 0, so the result says whether there is one).
bool MixerLineId(DWORD componentType, DWORD* lineId);
// The id of the line's control of a type (the volume: MIXERCONTROL_CONTROLTYPE_VOLUME); 0 when none.
DWORD MixerControlId(DWORD lineId, DWORD controlType);
// The volume control of a component type's line, in one go; 0 when the line or its control is missing.
DWORD VolumeControlOf(DWORD componentType);
// A fader's value as a whole percent (50 for a control whose minimum is not below its maximum).
bool ReadMixerPercent(DWORD controlId, uint32_t* percent);
// Sets a fader to percent 0..100, quantised as the mixer's step count asks.
bool WriteMixerPercent(DWORD controlId, int32_t percent);
