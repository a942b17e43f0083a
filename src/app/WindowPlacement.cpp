#include "app/WindowPlacement.h"

#include <algorithm>
#include <cmath>

namespace jk {

namespace {

PixelRect SizeWithin(const Settings& settings, const PixelRect& screen, MinimumSize minimum) {
    PixelRect rect;
    rect.width = std::max(TwipsToPixels(settings.Width), minimum.width);
    rect.height = std::max(TwipsToPixels(settings.Height), minimum.height);
    if (screen.width > 0) {
        rect.width = std::min(rect.width, screen.width);
    }
    if (screen.height > 0) {
        rect.height = std::min(rect.height, screen.height);
    }
    return rect;
}

int KeepWithin(int position, int size, int start, int extent) {
    if (extent <= 0) {
        return position;
    }
    position = std::min(position, start + extent - size);
    return std::max(position, start);
}

}  // namespace

int TwipsToPixels(double twips) {
    const double pixels = std::round(twips / kTwipsPerPixel);
    constexpr double kLimit = 1 << 24;
    if (!std::isfinite(pixels)) {
        return 0;
    }
    return static_cast<int>(std::clamp(pixels, -kLimit, kLimit));
}

double PixelsToTwips(int pixels) {
    return pixels * kTwipsPerPixel;
}

PixelRect PlaceSavedWindow(const Settings& settings, const PixelRect& screen, MinimumSize minimum) {
    PixelRect rect = SizeWithin(settings, screen, minimum);
    rect.x = KeepWithin(TwipsToPixels(settings.Left), rect.width, screen.x, screen.width);
    rect.y = KeepWithin(TwipsToPixels(settings.Top), rect.height, screen.y, screen.height);
    return rect;
}

PixelRect CentreSavedWindow(const Settings& settings, const PixelRect& screen,
                            MinimumSize minimum) {
    PixelRect rect = SizeWithin(settings, screen, minimum);
    rect.x = screen.x + (screen.width - rect.width) / 2;
    rect.y = screen.y + (screen.height - rect.height) / 2;
    return rect;
}

void SaveWindowEdges(Settings& settings, int x, int y) {
    settings.Left = PixelsToTwips(x);
    settings.Top = PixelsToTwips(y);
}

void SaveWindowSize(Settings& settings, int width, int height, bool maximized) {
    settings.Width = PixelsToTwips(width);
    settings.Height = PixelsToTwips(height);
    settings.State = maximized ? 2 : 0;
}

}  // namespace jk
