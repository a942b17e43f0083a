#include "app/WindowPlacement.h"

#include <tuple>
#include <vector>

#include <gtest/gtest.h>

namespace jk {
namespace {

TEST(WindowPlacement, ConvertsTwipsAtFifteenPerPixel) {
    EXPECT_EQ(TwipsToPixels(8550), 570);
    EXPECT_EQ(TwipsToPixels(6930), 462);
    EXPECT_EQ(TwipsToPixels(-150), -10);
    EXPECT_EQ(TwipsToPixels(1e300), 1 << 24);
    EXPECT_EQ(PixelsToTwips(570), 8550);
}

TEST(WindowPlacement, KeepsASavedWindowOnTheScreenAndUsable) {
    const PixelRect screen{0, 0, 1920, 1080};
    Settings settings;
    settings.Width = 8550;
    settings.Height = 6930;
    const std::vector<std::tuple<double, double, PixelRect>> cases = {
        {150, 300, {20, 10, 570, 462}},         // Left 300 twips, Top 150 twips
        {-3000, -3000, {0, 0, 570, 462}},       // off the top left
        {15000, 27000, {1350, 618, 570, 462}},  // partly off the bottom right
        {30000, 60000, {675, 309, 570, 462}},   // off every screen: centred
    };
    for (const auto& [top, left, expected] : cases) {
        settings.Top = top;
        settings.Left = left;
        EXPECT_EQ(PlaceSavedWindow(settings, screen), expected) << top << "," << left;
    }
    settings.Top = settings.Left = 0;
    // A file without geometry, or with a nonsensical one: the default size, centred.
    for (const double size : {0.0, -4500.0, 1500.0}) {
        settings.Width = settings.Height = size;
        EXPECT_EQ(PlaceSavedWindow(settings, screen), (PixelRect{320, 130, 1280, 820})) << size;
    }
    settings.Width = settings.Height = 99999;
    EXPECT_EQ(PlaceSavedWindow(settings, screen), (PixelRect{0, 0, 1920, 1080}));
    settings.Width = 8550;
    settings.Height = 6930;
    // A first run gets room for its three panes; a small screen is filled no further.
    EXPECT_EQ(CentreSavedWindow(settings, {100, 0, 1000, 800}), (PixelRect{200, 60, 800, 680}));
    EXPECT_EQ(CentreSavedWindow(settings, {0, 0, 640, 480}), (PixelRect{35, 9, 570, 462}));
}

TEST(WindowPlacement, AWindowOnASecondScreenStaysThereAndOneOffEveryScreenComesBack) {
    const std::vector<PixelRect> screens = {{0, 0, 1920, 1080}, {1920, 0, 1280, 1024}};
    Settings settings;
    settings.Width = 9000;   // 600 pixels
    settings.Height = 7500;  // 500 pixels
    settings.Left = PixelsToTwips(2200);
    settings.Top = PixelsToTwips(100);
    EXPECT_EQ(PlaceSavedWindow(settings, screens), (PixelRect{2200, 100, 600, 500}));
    settings.Left = PixelsToTwips(5000);  // the second monitor is gone
    EXPECT_EQ(PlaceSavedWindow(settings, screens), (PixelRect{660, 290, 600, 500}));
}

TEST(WindowPlacement, SavesTheNormalSizeAndTheMaximizedState) {
    Settings settings;
    SaveWindowEdges(settings, 40, 30);
    SaveWindowSize(settings, 700, 500, true);
    EXPECT_EQ(settings.Left, 600);
    EXPECT_EQ(settings.Top, 450);
    EXPECT_EQ(settings.Width, 10500);
    EXPECT_EQ(settings.Height, 7500);
    EXPECT_EQ(settings.State, 2);
    SaveWindowSize(settings, 700, 500, false);
    EXPECT_EQ(settings.State, 0);
}

}  // namespace
}  // namespace jk
