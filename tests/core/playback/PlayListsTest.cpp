#include "playback/PlayLists.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/playback/PlaybackTestSupport.h"
#include "playback/QueueTypes.h"

namespace jk {
namespace {

using Paths = std::vector<std::string>;

RowList Rows(const std::vector<bool>& selected) {
    RowList rows;
    for (std::size_t i = 0; i < selected.size(); ++i) {
        rows.push_back(test::RowAt("/" + std::to_string(i + 1), "artist", selected[i]));
    }
    return rows;
}

TEST(PlayLists, AllAndSelectedRowsInRowOrder) {
    const RowList rows = Rows({false, true, false, true});
    EXPECT_EQ(AllRowPaths(rows), (Paths{"/1", "/2", "/3", "/4"}));
    EXPECT_EQ(SelectedRowPaths(rows), (Paths{"/2", "/4"}));
    EXPECT_EQ(SelectedRowPaths(Rows({false, false})), Paths{});
}

TEST(PlayLists, PlayFromHereRotatesTheList) {
    EXPECT_EQ(WrappedRowPaths(Rows({false, false, true, true})), (Paths{"/3", "/4", "/1", "/2"}));
    EXPECT_EQ(WrappedRowPaths(Rows({false, false, false})), (Paths{"/1", "/2", "/3"}));
    EXPECT_EQ(WrappedRowPaths(Rows({false, false, true})), (Paths{"/3", "/1", "/2"}));
    EXPECT_EQ(WrappedRowPaths({}), Paths{});
}

TEST(PlayLists, TheJukarraCommandsShuffleACopy) {
    const RowList rows = Rows({false, true, false, false, false, false, false, false});
    ShuffleRandom random(42);
    Paths shuffled = ShuffledRowPaths(rows, true, random);
    EXPECT_EQ(AllRowPaths(rows), (Paths{"/1", "/2", "/3", "/4", "/5", "/6", "/7", "/8"}));
    EXPECT_NE(shuffled, AllRowPaths(rows));
    std::sort(shuffled.begin(), shuffled.end());
    EXPECT_EQ(shuffled, AllRowPaths(rows));
}

TEST(QueueTypes, RotateQuadKeepsFourMostRecent) {
    const QuadList four = {"Alpha", "beta", "Gamma", "delta"};
    EXPECT_EQ(RotateQuad("new", four), (QuadList{"new", "Alpha", "beta", "Gamma"}));
    EXPECT_EQ(RotateQuad("GAMMA", four), (QuadList{"GAMMA", "Alpha", "beta", "delta"}));
    EXPECT_EQ(RotateQuad("alpha", four), (QuadList{"alpha", "beta", "Gamma", "delta"}));
    EXPECT_EQ(RotateQuad("Delta", four), (QuadList{"Delta", "Alpha", "beta", "Gamma"}));
    EXPECT_EQ(RotateQuad("Ärger", {"ärger", "", "", ""}), (QuadList{"Ärger", "", "", ""}));
    EXPECT_EQ(RotateQuad("x", {}), (QuadList{"x", "", "", ""}));
}

}  // namespace
}  // namespace jk
