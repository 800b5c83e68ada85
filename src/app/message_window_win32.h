// `CWNDMENSAJE`: the game's own modeless message window. A framed picture with a localised heading, the
// message set in the common font with full justification, OK and (with a callback) cancel, and optionally
// a one-line name field. The owner is disabled while it shows; the answer reaches the callback 45 ms
// after the window has gone. One message window exists at a time.
#pragma once

#include <windows.h>

#include <cstdint>

constexpr const char kMessageWindowClass[] = "CWNDMENSAJE";
constexpr int kMessageInputLimit = 23;  // characters the name field takes

// Receives 1 when the player accepted (OK or Enter), 0 otherwise (cancel or Escape).
typedef void (*MessageCallback)(uint8_t answer);

void RegisterMessageWindowClass(HINSTANCE instance);
// Shows the text at string base + language. Without a callback the message is a notice with OK only and
// nothing is reported. With `input` a name field of 23 characters takes the focus; its text is in
// MessageInputText() before the callback runs, whatever the answer. Returns the window, or null.
HWND ShowMessage(int stringBase, HWND owner, MessageCallback callback, bool input);
// The text typed into the last name field (empty when there was none).
const char* MessageInputText();
// The message window now showing, or null.
HWND CurrentMessageWindow();

// Draws text word-wrapped and fully justified into width pixels from (x, y), in a font made for the
// call (face, weight, height in pixels); with a shadow, each line is first drawn offset by shadowOffset
// in shadowColor. The background is left as it is.
void DrawWrappedText(HDC dc, const char* text, const char* face, int32_t weight, int32_t height, COLORREF color,
                     bool shadow, COLORREF shadowColor, int32_t shadowOffset, int32_t x, int32_t y, int32_t width);
