// The game's controls and panels drawn in the house look: command, check, scroll and animated-button
// strips, and the wood-and-parchment panels the screens are built on.
#pragma once

#include <string>

#include "artgen/paint.h"

// A brass button face with an engraved icon, in one state, filling (x, y, w, h).
void DrawIconButton(cairo_t* cr, double x, double y, double w, double h, ButtonState state, Icon icon);
// A brass button face with engraved words.
void DrawWordButton(cairo_t* cr, double x, double y, double w, double h, ButtonState state, const std::string& words,
                    Icon icon = kIconCount);
// Three stacked frames (normal, lit, pressed) of an icon button / a word button over a strip of w x 3h.
void DrawIconCommandStrip(cairo_t* cr, int w, int frameH, Icon icon);
void DrawWordCommandStrip(cairo_t* cr, int w, int frameH, const std::string& words, Icon icon = kIconCount);
// Four stacked frames: unchecked, unchecked lit, checked, checked lit. A tab looks like a file-card
// tab; a check is a round lamp with words beside it.
void DrawTabCheckStrip(cairo_t* cr, int w, int frameH, const std::string& words);
void DrawLampCheckStrip(cairo_t* cr, int w, int frameH, const std::string& words);
// Ten 50 x 50 frames side by side: frame 0 at rest, 1..9 a growing glow and a little swing of the icon.
// With withDisabled an eleventh frame follows (the strip is 550 wide): the rest frame greyed and
// dimmed, for a button that cannot be pressed now.
void DrawAnimButtonStrip(cairo_t* cr, Icon icon, Rgb accent, bool withDisabled = false);
// A music track's button: the ten glow frames with the track's numeral, then the look of the track that
// plays (full glow inside a lit green ring).
void DrawTrackButtonStrip(cairo_t* cr, const std::string& numeral, Rgb accent);
// Zone-major scroll strip: upper arrow, track with its grip, lower arrow; 3 states each.
void DrawScrollStrip(cairo_t* cr, int w, const int zones[3]);
// A screen panel: walnut frame, parchment face, optional title plaque (words) on top.
void DrawPanel(cairo_t* cr, int w, int h, const std::string& title, uint32_t seed, double frameWidth = 14);
// A title plaque: brass nameplate with engraved words, filling the box.
void DrawTitlePlaque(cairo_t* cr, double x, double y, double w, double h, const std::string& words);
// A sunken well for thumbnails or pictures.
void DrawWell(cairo_t* cr, double x, double y, double w, double h);
