#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "catalogue/VirtualFolders.h"
#include "catalogue/VolumeFile.h"
#include "core/catalogue/VdriveTestSupport.h"

namespace jk {
namespace {

using test::VHeader;
using test::VolumeSong;
using test::VRecord;

TEST(VolumeFileTest, SaveWritesVersion101VolumeByVolumeWithAlbumAsItStands) {
    VolumeTable table;
    table.emplace_back("Rock");
    table.emplace_back("Jazz");
    SongInfo track = VolumeSong("Rock", "/media/u/ROCK/a/1.mp3");
    track.Album = "Blue";
    track.Track = 7;
    table[0].Append(track);
    table[0].Append(VolumeSong("Rock", "/media/u/ROCK/b/2.mp3"));
    table[1].Append(VolumeSong("Jazz", "d:\\jazz\\3.mp3"));
    table.emplace_back("Empty");  // a volume without songs leaves no trace

    SongInfo r1 = track;
    SongInfo r2 = VolumeSong("Rock", "/media/u/ROCK/b/2.mp3");
    SongInfo r3 = VolumeSong("Jazz", "d:\\jazz\\3.mp3");
    EXPECT_EQ(VolumesBytes(table),
              VHeader("VBASE 1.01", 3) + VRecord(r1) + VRecord(r2) + VRecord(r3));
}

TEST(VolumeFileTest, RoundTripGroupsByVolumeAndPadsBitrate) {
    SongInfo a = VolumeSong("Rock", "/m/1.mp3");
    a.Bitrate = "96";
    SongInfo b = VolumeSong("Jazz", "/m/2.mp3");
    SongInfo c = VolumeSong("Rock", "/m/3.mp3");  // a later record of an earlier volume
    const std::string bytes = VHeader("VBASE 1.07", 3) + VRecord(a) + VRecord(b) + VRecord(c);
    VolumeTable table;
    const VolumesLoad load = LoadVolumesFromBytes(bytes, table);
    ASSERT_TRUE(load.ok);
    ASSERT_EQ(table.size(), 2u);
    EXPECT_EQ(table[0].Name, "Rock");
    ASSERT_EQ(table[0].Count(), 2u);
    EXPECT_EQ(table[0].Song(0).Bitrate, "  96");
    EXPECT_EQ(table[0].Song(1).Path, "/m/3.mp3");
    EXPECT_EQ(table[1].Song(0).Volume, "Jazz");
    // Saved and read again in a fresh table: the same songs.
    VolumeTable again;
    ASSERT_TRUE(LoadVolumesFromBytes(VolumesBytes(table), again).ok);
    ASSERT_EQ(again.size(), 2u);
    for (std::size_t v = 0; v < 2; ++v) {
        for (std::size_t i = 0; i < table[v].Count(); ++i) {
            EXPECT_EQ(again[v].Song(i), table[v].Song(i));
        }
    }
}

TEST(VolumeFileTest, FileCutAtEveryByteKeepsWholeRecordsAndNeverFails) {
    const std::string bytes = VHeader("VBASE 1.01", 2) + VRecord(VolumeSong("A", "/x/1.mp3")) +
                              VRecord(VolumeSong("B", "/x/2.mp3"));
    const std::size_t first = 20 + VRecord(VolumeSong("A", "/x/1.mp3")).size();
    for (std::size_t cut = 0; cut < bytes.size(); ++cut) {
        VolumeTable table;
        const VolumesLoad load = LoadVolumesFromBytes(bytes.substr(0, cut), table);
        EXPECT_FALSE(load.ok && cut > 20) << cut;
        EXPECT_EQ(load.records, cut >= first ? 1 : 0) << cut;
    }
}

// A file loaded from disk keeps most records where the file is mapped, and rewrites those a
// load changes (blanks trimmed, windows-1252 text, a bitrate short of width 4): either way the
// songs are the ones read from memory, and a save gives the same bytes as one from memory.
TEST(VolumeFileTest, LoadFromTheFileEqualsLoadFromMemory) {
    SongInfo padded = VolumeSong("B", "/media/ann/B/x/2.mp3", "  padded  ");
    padded.Bitrate = "96";
    SongInfo latin = VolumeSong("A", "/media/ann/A/caf\xe9.mp3");
    latin.Track = 7;  // a file holds no Track: read back as 0
    const std::string bytes = VHeader("VBASE 1.01", 4) +
                              VRecord(VolumeSong("A", "/media/ann/A/1.mp3")) + VRecord(latin) +
                              VRecord(padded) + VRecord(VolumeSong("A", "/media/ann/A/0.mp3"));
    test::TempFolder folder;
    folder.Write("master.dat", bytes);
    VolumeTable fromFile;
    VolumeTable fromMemory;
    ASSERT_TRUE(LoadVolumes(folder.File("master.dat"), fromFile).ok);
    ASSERT_TRUE(LoadVolumesFromBytes(bytes, fromMemory).ok);
    ASSERT_EQ(fromFile.size(), 2u);
    ASSERT_EQ(fromFile[0].Count(), 3u);
    for (std::size_t v = 0; v < fromFile.size(); ++v) {
        for (std::size_t i = 0; i < fromFile[v].Count(); ++i) {
            EXPECT_EQ(fromFile[v].Song(i), fromMemory[v].Song(i)) << v << "/" << i;
            EXPECT_EQ(fromFile[v].TrackOf(i), 0);
        }
    }
    EXPECT_EQ(fromFile[0].Song(1).Path, "/media/ann/A/caf\xc3\xa9.mp3");
    EXPECT_EQ(fromFile[1].Song(0).Title, "padded");
    EXPECT_EQ(fromFile[1].Song(0).Bitrate, "  96");
    EXPECT_EQ(VolumesBytes(fromFile), VolumesBytes(fromMemory));

    // The volumes outlive the file replaced by a save (renamed over it, as every save of ours
    // is: a file rewritten in place under a mapping cannot be read); songs added afterwards join
    // their folders (the index of folders is made again) and keep their Track.
    ASSERT_TRUE(WriteFileAtomically(folder.File("master.dat"), "replaced").ok);
    SongInfo added = VolumeSong("A", "/media/ann/A/9.mp3");
    added.Track = 3;
    added.Reserved = -2;
    fromFile[0].ReleaseSpare();
    fromFile[0].Append(added);
    EXPECT_EQ(fromFile[0].Song(3), added);
    EXPECT_EQ(fromFile[0].FolderIndexOf(3), fromFile[0].FolderIndexOf(0));
    EXPECT_EQ(fromFile[0].Folders().size(), 1u);
    EXPECT_EQ(fromFile[1].Song(0).Title, "padded");
}

// Sorting compares whole paths byte by byte, also where one folder lies inside another and
// where a name sorts before a sub-folder ("a b" < "a/" < "a0"); equal paths keep their order.
TEST(VolumeFileTest, SortByPathOrdersWholePathsAcrossNestedFolders) {
    const std::vector<std::string> paths = {"/m/A/a/z.mp3",   "/m/A/a0.mp3",   "/m/A/a b/x.mp3",
                                            "/m/A/a/b/c.mp3", "/m/A/.mp3",     "/m/A/a.mp3",
                                            "/m/B/1.mp3",     "/m/A/a/b.mp3",  "d:\\old\\1.mp3",
                                            "/m/A/a/z.mp3",   "/m/A/a/b/a.mp3"};
    VirtualVolume volume("V");
    for (std::size_t i = 0; i < paths.size(); ++i) {
        volume.Append(VolumeSong("V", paths[i], std::to_string(i)));
    }
    EXPECT_FALSE(volume.IsSortedByPath());
    volume.SortByPath();
    EXPECT_TRUE(volume.IsSortedByPath());
    std::vector<std::string> expected = paths;
    std::stable_sort(expected.begin(), expected.end());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(volume.PathOf(i), expected[i]) << i;
    }
    // The two equal paths in their first order.
    const auto first =
        std::find(expected.begin(), expected.end(), "/m/A/a/z.mp3") - expected.begin();
    EXPECT_EQ(volume.Song(static_cast<std::size_t>(first)).Title, "0");
    EXPECT_EQ(volume.Song(static_cast<std::size_t>(first) + 1).Title, "9");
}

TEST(VolumeFileTest, CountLargerThanTheFileAllocatesNothingAndFails) {
    VolumeTable table;
    const VolumesLoad load = LoadVolumesFromBytes(
        VHeader("VBASE 1.01", 99999999) + VRecord(VolumeSong("A", "/1")), table);
    EXPECT_FALSE(load.ok);
    EXPECT_EQ(load.records, 1);
    EXPECT_EQ(table.size(), 1u);
}

TEST(VolumeFileTest, LongFieldsAndOddNamesSurviveARoundTrip) {
    SongInfo song = VolumeSong("\xff\xfe", "/x/" + std::string(65000, 'p'));
    song.Comment = std::string(65535, 'c');
    VolumeTable table;
    table.emplace_back(song.Volume);
    table[0].Append(song);
    VolumeTable again;
    ASSERT_TRUE(LoadVolumesFromBytes(VolumesBytes(table), again).ok);
    ASSERT_EQ(again.size(), 1u);
    // Not UTF-8: kept byte for byte (an older installation's raw bytes read as windows-1252).
    EXPECT_EQ(again[0].Name, "\xff\xfe");
    EXPECT_EQ(again[0].Song(0).Comment.size(), 65535u);
    EXPECT_EQ(again[0].Song(0).Path, song.Path);
}

TEST(VolumeFileTest, TenThousandVolumesLoadInTheirOrder) {
    std::string bytes = VHeader("VBASE 1.01", 10000);
    for (int i = 0; i < 10000; ++i) {
        bytes += VRecord(VolumeSong("V" + std::to_string(i), "/m/s.mp3"));
    }
    VolumeTable table;
    ASSERT_TRUE(LoadVolumesFromBytes(bytes, table).ok);
    ASSERT_EQ(table.size(), 10000u);
    EXPECT_EQ(table[9999].Name, "V9999");
    EXPECT_EQ(VolumesBytes(table), bytes);
}

TEST(VolumeFileTest, BuildVirtualVolumesSortsNamesAndComparesExactly) {
    std::vector<SongInfo> flat = {VolumeSong("rock", "/1"), VolumeSong("Rock", "/2"),
                                  VolumeSong("rock", "/3"), VolumeSong("Abba", "/4")};
    VolumeTable table;
    BuildVirtualVolumes(flat, table);
    EXPECT_TRUE(flat.empty());
    ASSERT_EQ(table.size(), 3u);
    EXPECT_EQ(table[0].Name, "Abba");
    EXPECT_EQ(table[1].Name, "Rock");
    EXPECT_EQ(table[2].Name, "rock");
    EXPECT_EQ(table[2].Count(), 2u);
}

TEST(VolumeFileTest, ImportTakesTheNextFreeNameCountingFromTwo) {
    VolumeTable existing;
    existing.emplace_back("Live");
    existing.emplace_back("live (2)");
    std::vector<SongInfo> flat = {VolumeSong("Live", "/1"), VolumeSong("New", "/2")};
    VolumeTable temp = ImportVirtualVolumes(flat, existing);
    ASSERT_EQ(temp.size(), 2u);
    EXPECT_EQ(temp[0].Name, "Live (3)");
    EXPECT_EQ(temp[0].Song(0).Volume, "Live (3)");
    EXPECT_EQ(temp[1].Name, "New");
}

TEST(VolumeNamesTest, ValidAndUniqueNames) {
    struct Case {
        std::string_view name;
        bool valid;
    };
    for (const Case& c :
         {Case{"1999", false}, Case{"1999 Live", true}, Case{"a/b", false}, Case{"a\\b", false},
          Case{"c:", false}, Case{"", false}, Case{"Rock", true}}) {
        EXPECT_EQ(ValidVolume(c.name), c.valid) << c.name;
    }
    VolumeTable table;
    table.emplace_back("Rock");
    EXPECT_FALSE(UniqueVolume(table, "rOCK"));
    EXPECT_TRUE(UniqueVolume(table, "Rock2"));
    table.emplace_back("Rock");  // a rename may make two of one name: the first is found
    table[1].Append(VolumeSong("Rock", "/x"));
    ASSERT_TRUE(RenameVolume(table, "Rock", "Pop"));
    EXPECT_EQ(table[0].Name, "Pop");
    EXPECT_TRUE(WipeVolume(table, "Rock"));
    EXPECT_EQ(table.size(), 1u);
    EXPECT_EQ(GetVirtualVolumes(table), std::vector<std::string>{"Pop"});
}

TEST(VirtualFoldersTest, NodesCutTheDrivePartAndIncludeAncestors) {
    VirtualVolume volume("CD");
    volume.Append(VolumeSong("CD", "/media/ann/DISC/rock/b/2.mp3"));
    volume.Append(VolumeSong("CD", "/media/ann/DISC/rock/a/1.mp3"));
    volume.Append(VolumeSong("CD", "/media/ann/DISC/top.mp3"));
    const std::vector<VirtualFolderNode> nodes = AddVolumeTree(volume);
    ASSERT_EQ(nodes.size(), 4u);
    EXPECT_EQ(nodes[0].Key, "CD");
    EXPECT_EQ(nodes[0].Text, "CD");
    EXPECT_EQ(nodes[1].Key, "CD/rock");
    EXPECT_EQ(nodes[1].ParentKey, "CD");
    EXPECT_EQ(nodes[2].Key, "CD/rock/a");
    EXPECT_EQ(nodes[2].Text, "a");
    EXPECT_EQ(nodes[3].ParentKey, "CD/rock");
    EXPECT_EQ(volume.PathOf(0), "/media/ann/DISC/rock/a/1.mp3");  // sorted by Path

    VirtualVolume old("Old");
    old.Append(VolumeSong("Old", "d:\\music\\x.mp3"));
    const auto oldNodes = AddVolumeTree(old);
    ASSERT_EQ(oldNodes.size(), 2u);
    EXPECT_EQ(oldNodes[1].Key, "Old\\music");

    EXPECT_EQ(CutDrivePart("/home/ann/x/"), "/home/ann/x");
    EXPECT_EQ(CutDrivePart("/"), "");
    // A folder that is a mount root is the top of its disc, not a folder on "/".
    EXPECT_EQ(CutDrivePart("/media/ann/DISC"), "");
    EXPECT_EQ(CutDrivePart("/mnt/stick/"), "");
    EXPECT_EQ(CutDrivePart("/media/ann/DISC/rock"), "/rock");
    std::vector<TreeRootInfo> roots = {{"/", false}, {"abba", true}, {"Zappa", true}};
    EXPECT_EQ(VirtualRootPosition(roots, "Metal"), 2u);
    EXPECT_EQ(VirtualRootPosition(roots, "zz"), 3u);
}

TEST(VirtualFoldersTest, FolderSongsAndSongsBelow) {
    VirtualVolume volume("CD");
    volume.Append(VolumeSong("CD", "/media/ann/DISC/rock/1.mp3"));
    volume.Append(VolumeSong("CD", "/media/ann/DISC/rock/a/2.mp3"));
    volume.Append(VolumeSong("CD", "/media/ann/DISC/rockabilly/3.mp3"));
    EXPECT_EQ(SongsOfVirtualFolder(volume, "/rock", false), (std::vector<std::size_t>{0}));
    EXPECT_EQ(SongsOfVirtualFolder(volume, "/rock", true), (std::vector<std::size_t>{0, 1}));
    EXPECT_EQ(SongsOfVirtualFolder(volume, "", true).size(), 3u);
    EXPECT_EQ(SplitVirtualKey("CD/rock/a").Volume, "CD");

    // A doubled separator in an older catalogue's path makes no empty-named folder: each song
    // is listed under exactly one node of the tree.
    VirtualVolume doubled("Old");
    doubled.Append(VolumeSong("Old", "/a//b/1.mp3"));
    doubled.Append(VolumeSong("Old", "/a/2.mp3"));
    std::size_t listed = 0;
    for (const VirtualFolderNode& node : AddVolumeTree(doubled)) {
        EXPECT_NE(node.Key, "Old/a/");
        listed += SongsOfVirtualFolder(doubled, node.Key.substr(3), false).size();
        if (node.Key == "Old/a//b") {
            EXPECT_EQ(node.ParentKey, "Old/a");
            EXPECT_EQ(node.Text, "b");
        }
    }
    EXPECT_EQ(listed, 2u);
    EXPECT_EQ(SplitVirtualKey("CD/rock/a").Folder, "/rock/a");
}

// A front end without a folder tree sorts the songs all the same: every volume's songs stand in
// the order the tree's making leaves them, equal paths and backslashed ones included.
TEST(VirtualFoldersTest, SortingWithoutTreesLeavesTheSongsInTheTreesOrder) {
    const auto make = [] {
        VolumeTable table;
        for (const char* name : {"A", "B", "Empty"}) {
            table.emplace_back(name);
        }
        const char* const paths[] = {"/m/z/9.mp3", "/m/a/1.mp3",   "d:\\x\\2.mp3", "/m/a/1.mp3",
                                     "/m/Z/0.mp3", "/m/a b/3.mp3", "/m/a/10.mp3"};
        for (std::size_t i = 0; i < std::size(paths); ++i) {
            SongInfo song = VolumeSong("A", paths[i]);
            song.Title = "song " + std::to_string(i);
            table[0].Append(song);
            table[1].Append(VolumeSong("B", paths[std::size(paths) - 1 - i]));
        }
        return table;
    };
    VolumeTable withTrees = make();
    VolumeTable withoutTrees = make();
    const auto trees = LoadVirtualFolders(withTrees);
    SortVolumesByPath(withoutTrees);
    ASSERT_EQ(trees.size(), withoutTrees.size());
    for (std::size_t v = 0; v < withTrees.size(); ++v) {
        ASSERT_EQ(withTrees[v].Count(), withoutTrees[v].Count());
        for (std::size_t i = 0; i < withTrees[v].Count(); ++i) {
            EXPECT_EQ(withTrees[v].Song(i).Title, withoutTrees[v].Song(i).Title) << v << " " << i;
            EXPECT_EQ(withTrees[v].PathOf(i), withoutTrees[v].PathOf(i));
        }
    }
    EXPECT_EQ(withoutTrees[0].PathOf(0), "/m/Z/0.mp3");
}

}  // namespace
}  // namespace jk
