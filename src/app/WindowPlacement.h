#pragma once

// The main window's geometry between the settings (twips) and the screen (pixels): where a
// saved window goes back, kept on the screen and at a usable size, and what is saved.

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

// The saved window, at least the minimum size, no larger than the screen, moved onto it.
PixelRect PlaceSavedWindow(const Settings& settings, const PixelRect& screen,
                           MinimumSize minimum = {});
// The saved size centred on the screen (a first run).
PixelRect CentreSavedWindow(const Settings& settings, const PixelRect& screen,
                            MinimumSize minimum = {});

// The window's top and left edge into Top and Left.
void SaveWindowEdges(Settings& settings, int x, int y);
// The normal (not maximized) size into Height and Width, and State: 2 when maximized, else 0.
void SaveWindowSize(Settings& settings, int width, int height, bool maximized);

}  // namespace jk
