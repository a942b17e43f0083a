#pragma once

// The main window's geometry between the settings (twips) and the screen (pixels): where a
// saved window goes back, kept on the screen and at a usable size, and what is saved.

#include <span>

#include "app/Settings.h"

namespace jk {

// Twips per logical pixel at the reference density of 96 pixels per inch.
inline constexpr double kTwipsPerPixel = 15.0;

int TwipsToPixels(double twips);
double PixelsToTwips(int pixels);

struct PixelRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    friend bool operator==(const PixelRect&, const PixelRect&) = default;
};

struct MinimumSize {
    int width = 320;
    int height = 240;
};

// A comfortable size for the main window on a screen: most of it, but no wider than a
// music manager needs, and no smaller than the minimum where the screen has room.
PixelRect DefaultWindowSize(const PixelRect& screen, MinimumSize minimum = {});

// The saved window, no larger than its screen and moved onto it. A size that is zero, negative
// or below the minimum (a settings file without the keys reads 0) gives the default size,
// centred; a window that lies off every screen (a monitor since unplugged) is centred on the
// first. `screens` are the available areas, the primary first.
PixelRect PlaceSavedWindow(const Settings& settings, std::span<const PixelRect> screens,
                           MinimumSize minimum = {});
PixelRect PlaceSavedWindow(const Settings& settings, const PixelRect& screen,
                           MinimumSize minimum = {});
// A first run: centred on the screen, at the saved size or the default size, whichever is
// larger, so that all three panes have room.
PixelRect CentreSavedWindow(const Settings& settings, const PixelRect& screen,
                            MinimumSize minimum = {});

// The window's top and left edge into Top and Left.
void SaveWindowEdges(Settings& settings, int x, int y);
// The normal (not maximized) size into Height and Width, and State: 2 when maximized, else 0.
void SaveWindowSize(Settings& settings, int width, int height, bool maximized);

}  // namespace jk
