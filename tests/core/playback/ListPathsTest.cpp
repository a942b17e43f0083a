#include "playback/ListPaths.h"

#include <string>

#include <gtest/gtest.h>

namespace jk {
namespace {

std::string Deep(std::size_t folders, std::string_view name) {
    std::string path;
    for (std::size_t i = 1; i <= folders; ++i) {
        path += "/f" + std::to_string(i);
    }
    return path + "/" + std::string(name);
}

TEST(MakeRelativePath, WritesSongsRelativeToTheListWhereTheyShareItsDrive) {
    const std::array<std::string_view, 3> cases[] = {
        {"/lists/x.mp3", "/lists/a.m3u", "x.mp3"},
        {"/music/y.mp3", "/lists/a.m3u", "../music/y.mp3"},
        {"/media/me/DISK/z.mp3", "/lists/a.m3u", "/media/me/DISK/z.mp3"},  // another drive
        {"/lists/sub/deep/z.mp3", "/lists/a.m3u", "sub/deep/z.mp3"},
        {"/a/b/c/x.mp3", "/a/d/e/l.m3u", "../../b/c/x.mp3"},
        {"/Lists/x.mp3", "/lists/a.m3u", "../Lists/x.mp3"},  // folders compared as they stand
        {"/media/me/DISK/music/y.mp3", "/media/me/DISK/lists/a.m3u", "../music/y.mp3"},
        {"/home/me/y.mp3", "/media/me/DISK/lists/a.m3u", "/home/me/y.mp3"},
        {"c:\\music\\y.mp3", "/lists/a.m3u", "c:\\music\\y.mp3"},
        {"Virtual Disc/y.mp3", "/lists/a.m3u", "Virtual Disc/y.mp3"},
        // Lines that would read back as another path are written as the path stands.
        {"/lists/AC\\DC.mp3", "/lists/a.m3u", "/lists/AC\\DC.mp3"},
        {"/lists/file:/x.mp3", "/lists/a.m3u", "/lists/file:/x.mp3"},
        {"/lists/c:/x.mp3", "/lists/a.m3u", "/lists/c:/x.mp3"},
        // A song directly under a mount folder lies on "/", as a list in the home folder does.
        {"/media/song.mp3", "/home/me/list.m3u", "../../media/song.mp3"},
        {"/mnt/song.mp3", "/home/me/list.m3u", "../../mnt/song.mp3"},
        {"/Volumes/a.mp3", "/home/me/list.m3u", "../../Volumes/a.mp3"},
        {"/run/media/x.mp3", "/home/me/list.m3u", "../../run/media/x.mp3"},
        {"/mnt/Disc/a.mp3", "/home/me/list.m3u", "/mnt/Disc/a.mp3"},  // on a drive of its own
        {"/media/song.mp3", "/media/list.m3u", "song.mp3"},
    };
    for (const auto& [path, list, expected] : cases) {
        EXPECT_EQ(MakeRelativePath(path, list, true).path, expected) << path << " in " << list;
        if (path.starts_with('/')) {
            EXPECT_EQ(ResolveListPath(MakeRelativePath(path, list, true).path, list).path, path);
        }
        EXPECT_EQ(MakeRelativePath(path, list, false).path, path);
    }
}

TEST(ListPaths, RelativeLinesReadBackAsTheSameFullPaths) {
    for (std::string_view list :
         {"/lists/a.m3u", "/home/me/Music/lists/b.m3u", "/media/me/DISK/lists/c.m3u", "/d.m3u"}) {
        for (std::string_view song :
             {"/lists/x.mp3", "/music/rock/y.mp3", "/home/me/Music/z.mp3",
              "/home/me/Music/lists/more/w.mp3", "/media/me/DISK/v.mp3",
              "/media/me/DISK/lists/u.mp3", "/t.mp3", "/home/me/Ünïcödé ß/s.mp3"}) {
            const std::string line = MakeRelativePath(song, list, true).path;
            EXPECT_EQ(ResolveListPath(line, list).path, song) << "line " << line << " of " << list;
        }
    }
}

TEST(ResolveListPath, TurnsLinesIntoFullPaths) {
    const std::array<std::string_view, 3> cases[] = {
        {"x.mp3", "/lists/a.m3u", "/lists/x.mp3"},
        {"/music/x.mp3", "/lists/a.m3u", "/music/x.mp3"},
        {"../music/y.mp3", "/home/me/lists/a.m3u", "/home/me/music/y.mp3"},
        // Lists written on Windows.
        {"..\\music\\y.mp3", "/home/me/lists/a.m3u", "/home/me/music/y.mp3"},
        {"\\music\\y.mp3", "/lists/a.m3u", "/lists/music/y.mp3"},  // lands below the list
        {"C:\\Music\\y.mp3", "/lists/a.m3u", "C:\\Music\\y.mp3"},
        {"\\\\server\\share\\y.mp3", "/lists/a.m3u", "\\\\server\\share\\y.mp3"},
        // ".." never climbs above the drive the list lies on.
        {"../../../../../x.mp3", "/home/me/lists/a.m3u", "/x.mp3"},
        {"../../../x.mp3", "/media/me/DISK/lists/a.m3u", "/media/me/DISK/x.mp3"},
        // Only leading ".." names go up; later ones are folder names like any other.
        {"../a/../x.mp3", "/l/m/a.m3u", "/l/a/../x.mp3"},
        {"", "/lists/a.m3u", "/lists/"},
        {"sub//x.mp3", "/lists/a.m3u", "/lists/sub/x.mp3"},
        {"http://radio.example.com/live", "/lists/a.m3u", "http://radio.example.com/live"},
        {"a:b.mp3", "/lists/a.m3u", "/lists/a:b.mp3"},
        {"x.mp3", "relative/a.m3u", "relative/x.mp3"},
    };
    for (const auto& [line, list, expected] : cases) {
        EXPECT_EQ(ResolveListPath(line, list).path, expected) << "line \"" << line << "\"";
    }
}

TEST(ListPaths, DeeperPathsThanTheArraysHoldAreErrors) {
    // Writing: 40 folders behind the drive, in the song's path and in the list's.
    const ListPathResult forty = MakeRelativePath(Deep(40, "x.mp3"), "/lists/a.m3u", true);
    ASSERT_TRUE(forty.Ok());
    EXPECT_EQ(ResolveListPath(forty.path, "/lists/a.m3u").path, Deep(40, "x.mp3"));
    const ListPathResult tooDeep = MakeRelativePath(Deep(41, "x.mp3"), "/lists/a.m3u", true);
    EXPECT_NE(tooDeep.error.find("40 folders"), std::string::npos);
    EXPECT_FALSE(MakeRelativePath("/music/x.mp3", Deep(41, "a.m3u"), true).Ok());
    EXPECT_EQ(MakeRelativePath(Deep(41, "x.mp3"), Deep(41, "a.m3u"), true).path, "x.mp3");

    // Reading: 50 names in a line ("\" counts too), and the drive and 49 folders of the list.
    std::string fifty;
    for (int i = 0; i < 50; ++i) {
        fifty += "d/";
    }
    EXPECT_TRUE(ResolveListPath(fifty + "x.mp3", "/lists/a.m3u").Ok());
    EXPECT_FALSE(ResolveListPath("d\\" + fifty + "x.mp3", "/lists/a.m3u").Ok());
    EXPECT_TRUE(ResolveListPath("x.mp3", Deep(49, "a.m3u")).Ok());
    EXPECT_FALSE(ResolveListPath("x.mp3", Deep(50, "a.m3u")).Ok());
    EXPECT_TRUE(ResolveListPath(Deep(80, "x.mp3"), Deep(80, "a.m3u")).Ok());  // never split
}

}  // namespace
}  // namespace jk
