#include "browse/FolderEntries.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "FakeFolderLister.h"

namespace jk {
namespace {

using Names = std::vector<std::string>;

TEST(GetFolderEntries, KeepsTheListingOrderAndSplitsFoldersFromFilteredFiles) {
    test::FakeFolderLister fs;
    fs.AddFolder("/music", {"z.mp3", "b/", "notes.txt", "A.MP3", "a/", "c.mp2"});
    std::string path = "/music";
    Names dirs;
    Names files;
    GetFolderEntries(path, dirs, files, 0, fs);
    EXPECT_EQ(path, "/music/");
    EXPECT_EQ(dirs, (Names{"b", "a"}));
    EXPECT_EQ(files, (Names{"z.mp3", "A.MP3"}));

    GetFolderEntries(path, dirs, files, 1, fs);
    EXPECT_EQ(files, (Names{"z.mp3", "A.MP3", "c.mp2"}));
    GetFolderEntries(path, dirs, files, 2, fs);
    EXPECT_EQ(files, (Names{"z.mp3", "notes.txt", "A.MP3", "c.mp2"}));
    GetFolderEntries(path, dirs, files, 7, fs);
    EXPECT_TRUE(files.empty());
    EXPECT_EQ(dirs, (Names{"b", "a"})) << "folders are collected whatever the filter";
}

TEST(GetFolderEntries, AddsNoSecondSeparatorAndListsTheRoot) {
    test::FakeFolderLister fs;
    fs.AddFolder("/", {"home/", "x.mp3"});
    for (std::string path : {std::string("/"), std::string("")}) {
        Names dirs;
        Names files;
        GetFolderEntries(path, dirs, files, 0, fs);
        EXPECT_EQ(path, "/");
        EXPECT_EQ(dirs, Names{"home"});
        EXPECT_EQ(files, Names{"x.mp3"});
    }
}

TEST(GetFolderEntries, GivesEmptyArraysForAFolderThatCannotBeRead) {
    test::FakeFolderLister fs;
    fs.AddFolder("/locked", {"a/", "b.mp3"});
    fs.MakeUnreadable("/locked");
    std::string path = "/locked/";
    Names dirs{"stale"};
    Names files{"stale.mp3"};
    GetFolderEntries(path, dirs, files, 0, fs);
    EXPECT_TRUE(dirs.empty());
    EXPECT_TRUE(files.empty());
    std::string gone = "/gone";
    GetFolderEntries(gone, dirs, files, 0, fs);
    EXPECT_EQ(gone, "/gone/");
    EXPECT_TRUE(dirs.empty());
    EXPECT_TRUE(files.empty());
}

TEST(GetFolderEntries, GrowsInStepsOf400AndEndsAtExactlyTheCount) {
    for (const std::size_t count : {399u, 400u, 401u, 800u, 801u}) {
        Names entries;
        for (std::size_t i = 0; i < count; ++i) {
            entries.push_back("song" + std::to_string(i) + ".mp3");
        }
        test::FakeFolderLister fs;
        fs.AddFolder("/big", entries);
        std::string path = "/big";
        Names dirs;
        Names files;
        GetFolderEntries(path, dirs, files, 0, fs);
        ASSERT_EQ(files.size(), count);
        EXPECT_EQ(files.capacity(), count) << "cut back to the count";
        EXPECT_EQ(files.front(), "song0.mp3");
        EXPECT_EQ(files.back(), "song" + std::to_string(count - 1) + ".mp3");
        EXPECT_EQ(dirs.capacity(), 0u) << "no folders: an empty array";
    }
}

TEST(FolderHasSubfolders, IgnoresDotEntriesAndStopsAtTheFirstFolder) {
    test::FakeFolderLister fs;
    fs.AddFolder("/flat", {"a.mp3", "b.mp3"});
    fs.AddFolder("/deep", {"a.mp3", "sub/", "more/"});
    EXPECT_FALSE(FolderHasSubfolders("/flat", fs));
    EXPECT_TRUE(FolderHasSubfolders("/deep/", fs));
    EXPECT_FALSE(FolderHasSubfolders("/missing", fs));
    EXPECT_EQ(fs.listed.back(), "/missing/");
}

}  // namespace
}  // namespace jk
