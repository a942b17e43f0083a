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
        {30000, 60000, {1350, 618, 570, 462}},  // off the bottom right
    };
    for (const auto& [top, left, expected] : cases) {
        settings.Top = top;
        settings.Left = left;
        EXPECT_EQ(PlaceSavedWindow(settings, screen), expected) << top << "," << left;
    }
    settings.Top = settings.Left = 0;
    settings.Width = settings.Height = 0;  // a file without geometry
    EXPECT_EQ(PlaceSavedWindow(settings, screen), (PixelRect{0, 0, 320, 240}));
    settings.Width = settings.Height = 99999;
    EXPECT_EQ(PlaceSavedWindow(settings, screen), (PixelRect{0, 0, 1920, 1080}));
    settings.Width = 8550;
    settings.Height = 6930;
    EXPECT_EQ(CentreSavedWindow(settings, {100, 0, 1000, 800}), (PixelRect{315, 169, 570, 462}));
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
