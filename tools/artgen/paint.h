// The house look, drawn with Cairo and Pango: walnut wood, polished brass, cream parchment and green
// baize, with engraved lettering. Every item of the game is built from these few materials.
#pragma once

#include <cairo.h>

#include <cstdint>
#include <string>
#include <vector>

struct Rgb {
    double r, g, b;
};
Rgb Hex(uint32_t rgb);
Rgb Mix(Rgb a, Rgb b, double t);
Rgb Scale(Rgb c, double factor);  // darker below 1, lighter above (clamped)

// The house colours.
namespace house {
extern const Rgb kWalnutDark, kWalnut, kWalnutLight;
extern const Rgb kBrassDark, kBrass, kBrassLight, kBrassShine;
extern const Rgb kParchment, kParchmentDark, kInk, kInkSoft;
extern const Rgb kBaize, kBaizeDark, kCopper, kCream, kRuby, kEmerald;
}  // namespace house

// Fonts: a book face for titles and a sans face for buttons and labels.
extern const char* const kTitleFont;   // e.g. "Linux Libertine O Bold"
extern const char* const kButtonFont;  // e.g. "Lato Heavy"
extern const char* const kTextFont;    // running text

// Button states shared by command strips, check strips and scroll zones.
enum ButtonState { kStateNormal = 0, kStateLit = 1, kStatePressed = 2 };

cairo_surface_t* NewSurface(int width, int height);  // ARGB32, transparent
void SetColor(cairo_t* cr, Rgb c, double alpha = 1.0);
void RoundedRect(cairo_t* cr, double x, double y, double w, double h, double r);

// Procedural textures, periodic over their own size so that they tile. Free with cairo_surface_destroy.
cairo_surface_t* MakeWood(int width, int height, Rgb dark, Rgb light, uint32_t seed, bool vertical);
cairo_surface_t* MakeParchment(int width, int height, uint32_t seed);
cairo_surface_t* MakeFelt(int width, int height, Rgb base, double fibre, uint32_t seed);
// Fills the current path with a texture repeated from the origin.
void FillWithTexture(cairo_t* cr, cairo_surface_t* texture, bool preserve = false);

// Materials on a rectangle.
void DrawWoodBoard(cairo_t* cr, double x, double y, double w, double h, uint32_t seed, bool vertical = false);
void DrawParchment(cairo_t* cr, double x, double y, double w, double h, double r, uint32_t seed);
void DrawBaize(cairo_t* cr, double x, double y, double w, double h, double r, uint32_t seed);
// Raised brass plate with a bevel; lit is brighter, pressed sinks (darker, inverted light).
void DrawBrassPlate(cairo_t* cr, double x, double y, double w, double h, double r, ButtonState state);
// A sunken groove or a raised bead edge around a rectangle.
void DrawBevel(cairo_t* cr, double x, double y, double w, double h, double r, double width, bool raised);
// Thin gold line rule with a dark companion (the "inlay" used on frames).
void DrawInlay(cairo_t* cr, double x, double y, double w, double h, double r);
// A picture frame: wooden moulding of the given width around (x, y, w, h), with a gold lip inside.
void DrawFrameMoulding(cairo_t* cr, double x, double y, double w, double h, double width, uint32_t seed);
// A soft drop shadow under a rounded rectangle.
void DrawShadow(cairo_t* cr, double x, double y, double w, double h, double r, double spread, double alpha);

// Text. The font shrinks until the text fits the box (never below 40 % of size).
enum TextEffect {
    kTextPlain,
    kTextEngraved,  // cut into metal: light edge below, dark letters
    kTextRaised,    // on wood: dark shadow below, light letters
    kTextGlow,      // soft halo around the letters
};
struct TextStyle {
    const char* font;
    double size;       // pixels
    Rgb color;
    TextEffect effect;
    int align;         // -1 left, 0 centre, 1 right
    bool wrap;         // word-wrap to the box width
};
// Draws utf8 centred vertically in the box; returns the size used.
double DrawText(cairo_t* cr, const std::string& utf8, double x, double y, double w, double h, const TextStyle& s);
// Text turned 90 degrees to read upwards, centred in the box.
void DrawTextUpwards(cairo_t* cr, const std::string& utf8, double x, double y, double w, double h,
                     const TextStyle& s);

// Icons drawn as vector shapes centred at (cx, cy) within a square of side size.
enum Icon {
    kIconClose, kIconHelp, kIconCheck, kIconArrowLeft, kIconArrowRight, kIconArrowUp, kIconArrowDown,
    kIconInfo, kIconMusic, kIconMagnifier, kIconCup, kIconBulb, kIconPiece, kIconPrinter, kIconDoor,
    kIconMinimise, kIconEraser, kIconFolder, kIconDisk, kIconTrash, kIconReplay, kIconGlobe, kIconBook,
    kIconFit, kIconActualSize, kIconPlay, kIconPencil, kIconStop, kIconSpeaker, kIconDisc, kIconTray,
    kIconEdges,  // the border of a jigsaw: a square ring of pieces round an empty middle
    kIconCloth,  // a folded table cloth with a fringe
    kIconCount
};
void DrawIcon(cairo_t* cr, Icon icon, double cx, double cy, double size, Rgb color);
// The outline of a classic jigsaw piece (tabs on top and right, blanks left and bottom) in a square.
void PiecePath(cairo_t* cr, double x, double y, double size);

// Surfaces to pixels: 24-bit packed DIB (bottom-up BGR), flattened over an opaque background colour.
uint8_t* SurfaceToDib24(cairo_surface_t* surface, Rgb background);
// RGBA bytes (straight alpha) of a surface, flattened over background, alpha forced to 255.
std::vector<uint8_t> SurfaceToRgba(cairo_surface_t* surface, Rgb background);
