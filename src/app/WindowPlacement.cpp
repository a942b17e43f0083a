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

PixelRect Centred(PixelRect rect, const PixelRect& screen) {
    rect.x = screen.x + (screen.width - rect.width) / 2;
    rect.y = screen.y + (screen.height - rect.height) / 2;
    return rect;
}

// True when enough of the window lies on the screen to grab its title bar.
bool Reachable(int x, int y, int width, int height, const PixelRect& screen) {
    constexpr int kGrabWidth = 100;
    constexpr int kGrabHeight = 40;
    if (screen.width <= 0 || screen.height <= 0) {
        return true;
    }
    const int left = std::max(x, screen.x);
    const int right = std::min(x + width, screen.x + screen.width);
    const int top = std::max(y, screen.y);
    const int bottom = std::min(y + height, screen.y + screen.height);
    return right - left >= std::min(kGrabWidth, width) &&
           bottom - top >= std::min(kGrabHeight, height);
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

PixelRect DefaultWindowSize(const PixelRect& screen, MinimumSize minimum) {
    constexpr int kMostWidth = 1280;
    constexpr int kMostHeight = 820;
    PixelRect rect;
    rect.width = std::clamp(screen.width * 4 / 5, minimum.width, kMostWidth);
    rect.height = std::clamp(screen.height * 17 / 20, minimum.height, kMostHeight);
    if (screen.width > 0) {
        rect.width = std::min(rect.width, screen.width);
    }
    if (screen.height > 0) {
        rect.height = std::min(rect.height, screen.height);
    }
    return rect;
}

PixelRect PlaceSavedWindow(const Settings& settings, std::span<const PixelRect> screens,
                           MinimumSize minimum) {
    const PixelRect primary = screens.empty() ? PixelRect{} : screens.front();
    const int savedWidth = TwipsToPixels(settings.Width);
    const int savedHeight = TwipsToPixels(settings.Height);
    if (savedWidth < minimum.width || savedHeight < minimum.height) {
        return Centred(DefaultWindowSize(primary, minimum), primary);
    }
    const int x = TwipsToPixels(settings.Left);
    const int y = TwipsToPixels(settings.Top);
    for (const PixelRect& screen : screens) {
        if (Reachable(x, y, savedWidth, savedHeight, screen)) {
            PixelRect rect = SizeWithin(settings, screen, minimum);
            rect.x = KeepWithin(x, rect.width, screen.x, screen.width);
            rect.y = KeepWithin(y, rect.height, screen.y, screen.height);
            return rect;
        }
    }
    return Centred(SizeWithin(settings, primary, minimum), primary);
}

PixelRect PlaceSavedWindow(const Settings& settings, const PixelRect& screen, MinimumSize minimum) {
    return PlaceSavedWindow(settings, std::span<const PixelRect>(&screen, 1), minimum);
}

PixelRect CentreSavedWindow(const Settings& settings, const PixelRect& screen,
                            MinimumSize minimum) {
    PixelRect rect = SizeWithin(settings, screen, minimum);
    const PixelRect comfortable = DefaultWindowSize(screen, minimum);
    rect.width = std::max(rect.width, comfortable.width);
    rect.height = std::max(rect.height, comfortable.height);
    return Centred(rect, screen);
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
