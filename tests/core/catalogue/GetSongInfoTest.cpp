#include "catalogue/GetSongInfo.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <limits>
#include <string>

#include "CatalogueTestSupport.h"
#include "catalogue/SongCache.h"
#include "catalogue/VBaseFile.h"
#include "util/TimeHelpers.h"

namespace jk {
namespace {

using test::StoredSong;
using test::TempFolder;
using test::WriteBytes;

constexpr std::int64_t kFileTime = 1700000000;  // 14 November 2023
constexpr std::string_view kLookupNow = "20240610120000";

std::string Padded(std::string_view text, std::size_t width) {
    std::string out(text.substr(0, width));
    out.append(width - out.size(), ' ');
    return out;
}

// A small MP3 file: three MPEG-1 Layer III frames (128 kbit/s, 44.1 kHz) of silence and an
// ID3v1.1 tag.
std::string SongBytes(std::string_view title, std::string_view album, int track) {
    std::string frame = "\xFF\xFB\x90\x00";
    frame.resize(417, '\0');
    std::string comment = Padded("", 28);
    comment.push_back('\0');
    comment.push_back(static_cast<char>(track));
    return frame + frame + frame + "TAG" + Padded(title, 30) + Padded("Artist", 30) +
           Padded(album, 30) + "1999" + comment + "\x11";
}

void SetFileTime(const std::string& path, std::int64_t seconds) {
    const timespec times[2] = {{static_cast<time_t>(seconds), 0},
                               {static_cast<time_t>(seconds), 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
}

void WriteSong(const std::string& path, std::string_view title, std::string_view album = "Album",
               int track = 5, std::int64_t time = kFileTime) {
    WriteBytes(path, SongBytes(title, album, track));
    SetFileTime(path, time);
}

class GetSongInfoTest : public ::testing::Test {
protected:
    SongLookup Lookup(bool exactTimes = true) {
        SongReadOptions options;
        options.exactTimes = exactTimes;
        options.readId3v2 = false;
        SongLookup lookup(m_cache, {m_total, m_hits}, options);
        lookup.now = [this] { return m_now; };
        return lookup;
    }
    SongInfo Get(const std::string& path, bool noCache = false) {
        SongLookup lookup = Lookup();
        lookup.noCache = noCache;
        return GetSongInfo(path, lookup);
    }

    TempFolder m_folder;
    SongCache m_cache;
    std::int32_t m_total = 0;
    std::int32_t m_hits = 0;
    std::string m_now = std::string(kLookupNow);
};

TEST_F(GetSongInfoTest, AMissReadsTheFileAndStoresItsSlot) {
    const std::string path = m_folder.File("Hit Song.MP3");
    WriteSong(path, "Hit Song");
    const SongInfo song = Get(path);
    EXPECT_EQ(song.Title, "Hit Song");
    EXPECT_EQ(song.Album, "Album - 05");
    EXPECT_EQ(song.Track, 5);
    EXPECT_EQ(song.Path, path);
    EXPECT_EQ(m_total, 1);
    EXPECT_EQ(m_hits, 0);

    ASSERT_EQ(m_cache.UpperBound(), 1);
    const SongInfo slot = m_cache.Record(1);
    EXPECT_EQ(slot.Path, "hit song.mp3");
    EXPECT_EQ(slot.Album, "Album");  // the suffix is never stored back
    EXPECT_EQ(slot.Date, FormatStamp14(kFileTime));
    EXPECT_EQ(slot.LastUsed, kLookupNow);
    EXPECT_EQ(slot.Time, StoredTime(song.Time, true));
}

TEST_F(GetSongInfoTest, AHitServesTheSlotWithoutReadingTheFile) {
    const std::string path = m_folder.File("song.mp3");
    WriteSong(path, "Cached");
    const SongInfo first = Get(path);
    // New tags under the old date: only a read of the file could see them.
    WriteSong(path, "Changed");
    m_now = "20240611090000";
    const SongInfo hit = Get(path);
    EXPECT_EQ(hit.Title, "Cached");
    EXPECT_EQ(hit.Path, path);
    EXPECT_EQ(hit.Album, "Album - 05");
    EXPECT_EQ(hit.Time, first.Time);
    EXPECT_EQ(hit.Date, FormatLocaleDateTime(kFileTime));
    EXPECT_EQ(hit.Date, first.Date);
    EXPECT_EQ(hit.Size, first.Size);
    EXPECT_EQ(m_cache.Record(1).LastUsed, "20240611090000");
    EXPECT_EQ(m_cache.UpperBound(), 1);
    EXPECT_EQ(m_total, 2);
    EXPECT_EQ(m_hits, 1);
}

TEST_F(GetSongInfoTest, ANameThatIsNotUtf8IsAHitAgainAfterTheCacheIsSavedAndLoaded) {
    // A name made in another encoding: a lone 0xE9, a stray 0x80, and a "%" as well.
    const std::string path = m_folder.File("Caf\xE9 \x80 100%.MP3");
    WriteSong(path, "");
    Get(path);
    const SongInfo stored = m_cache.Record(1);
    EXPECT_EQ(stored.Path, "caf\xE9 \x80 100%.mp3");
    EXPECT_EQ(stored.Title, "Caf\xE9 \x80 100%");  // an empty title is the name
    for (int listing = 0; listing < 2; ++listing) {
        ASSERT_TRUE(SaveCache(m_cache, m_folder.Path()).ok);
        SongCache loaded;
        LoadCache(loaded, m_folder.Path());
        m_cache = std::move(loaded);
        EXPECT_EQ(m_cache.Record(1).Path, stored.Path);
        EXPECT_EQ(m_cache.Record(1).Title, stored.Title);
        const SongInfo hit = Get(path);
        EXPECT_EQ(hit.Path, path);
        EXPECT_EQ(m_hits, listing + 1);
        EXPECT_EQ(m_cache.UpperBound(), 1);
    }
}

TEST_F(GetSongInfoTest, AStaleSlotCountsAsAHitAndIsReadAgain) {
    const std::string path = m_folder.File("song.mp3");
    WriteSong(path, "Old");
    Get(path);
    WriteSong(path, "New", "Album", 5, kFileTime + 60);
    const SongInfo song = Get(path);
    EXPECT_EQ(song.Title, "New");
    EXPECT_EQ(m_hits, 1);
    EXPECT_EQ(m_total, 2);
    // The stale slot stays beside the new one until the cache is optimised.
    EXPECT_EQ(m_cache.UpperBound(), 2);
}

TEST_F(GetSongInfoTest, NoCacheAddsNothingButStillUsesASlot) {
    const std::string path = m_folder.File("song.mp3");
    WriteSong(path, "Song");
    EXPECT_EQ(Get(path, true).Title, "Song");
    EXPECT_EQ(m_cache.UpperBound(), 0);
    Get(path);
    WriteSong(path, "Changed");
    EXPECT_EQ(Get(path, true).Title, "Song");
    EXPECT_EQ(m_hits, 1);
}

TEST_F(GetSongInfoTest, SameNamesInTwoFoldersShareOneSlot) {
    std::filesystem::create_directory(m_folder.File("a"));
    std::filesystem::create_directory(m_folder.File("b"));
    WriteSong(m_folder.File("a/Song.mp3"), "From A");
    WriteSong(m_folder.File("b/song.mp3"), "From B");
    EXPECT_EQ(Get(m_folder.File("a/Song.mp3")).Title, "From A");
    const SongInfo second = Get(m_folder.File("b/song.mp3"));
    EXPECT_EQ(second.Title, "From A");
    EXPECT_EQ(second.Path, m_folder.File("b/song.mp3"));
    EXPECT_EQ(m_cache.UpperBound(), 1);
}

TEST_F(GetSongInfoTest, SmallMissingAndFolderFilesAreNonExistantAndNotCounted) {
    WriteBytes(m_folder.File("131.mp3"), std::string(131, 'x'));
    WriteBytes(m_folder.File("132.mp3"), std::string(132, 'x'));
    std::filesystem::create_directory(m_folder.File("folder.mp3"));
    // A pipe is opened before its status is known: the open must not wait for a writer.
    ASSERT_EQ(::mkfifo(m_folder.File("pipe.mp3").c_str(), 0600), 0);
    for (const char* name : {"131.mp3", "missing.mp3", "folder.mp3", "pipe.mp3"}) {
        EXPECT_TRUE(IsNonExistant(Get(m_folder.File(name)))) << name;
    }
    EXPECT_EQ(Get(m_folder.File("folder.mp3")).Path, "File non-existant");
    EXPECT_EQ(m_total, 0);
    Get(m_folder.File("132.mp3"));
    EXPECT_EQ(m_total, 1);
}

TEST_F(GetSongInfoTest, ThePathIsTrimmedOnAReadAndOnAHit) {
    const std::string path = m_folder.File("song.mp3");
    WriteSong(path, "Song");
    EXPECT_EQ(Get("  " + path + "  ").Path, path);
    EXPECT_EQ(Get(" " + path + "   ").Path, path);
    EXPECT_EQ(m_hits, 1);
}

TEST_F(GetSongInfoTest, AHitShowsTheStoredTimeWithItsMinuteDigits) {
    const std::string path = m_folder.File("long.mp3");
    WriteSong(path, "Long");
    Get(path);
    m_cache.SetField(1, kKeyTime, "10005");
    SongLookup exact = Lookup(true);
    EXPECT_EQ(GetSongInfo(path, exact).Time, "100:05");
    SongLookup classic = Lookup(false);
    EXPECT_EQ(GetSongInfo(path, classic).Time, "10:05");
}

TEST_F(GetSongInfoTest, APrefetchedStatusStandsInForTheStat) {
    const std::string path = m_folder.File("song.mp3");
    WriteSong(path, "Song");
    Get(path);
    PrefetchedBytes prefetched;
    prefetched.status = StatPath(path);
    std::filesystem::remove(path);
    SongLookup lookup = Lookup();
    EXPECT_EQ(LendSongInfo(path, lookup, &prefetched).Title, "Song");
}

TEST_F(GetSongInfoTest, ASearchAheadStandsInForTheSearchOnlyWhileTheCacheStandsStill) {
    const std::string kept = m_folder.File("kept.mp3");
    const std::string later = m_folder.File("later.mp3");
    WriteSong(kept, "Kept");
    WriteSong(later, "Later");
    Get(kept);
    // New tags under the old date: only a read of the file could see them.
    WriteSong(kept, "Retagged");
    WriteSong(later, "Retagged");
    SongLookup lookup = Lookup();
    const auto title = [&lookup](const std::string& path) {
        const SongInfo& song = LendSongInfo(path, lookup);
        return IsNonExistant(song) ? std::string("(none)") : song.Title;
    };

    // Unchanged: the slot found ahead answers, and the lookup is counted in its turn.
    EXPECT_EQ(lookup.StampAhead(kept), FormatStamp14(kFileTime));
    EXPECT_EQ(title(kept), "Kept");
    EXPECT_EQ(m_total, 2);
    EXPECT_EQ(m_hits, 1);

    // A record put in front moves the slot found ahead: the turn searches again and still
    // hits, rather than taking the record now standing where the slot was.
    lookup.StampAhead(kept);
    m_cache.Insert(1, PackedSong(StoredSong("aaa.mp3")));
    EXPECT_EQ(title(kept), "Kept");
    EXPECT_EQ(m_hits, 2);

    // "later.mp3" was added after its search ahead found nothing: its turn hits the new record
    // rather than reading the song and adding it a second time.
    EXPECT_EQ(lookup.StampAhead(later), "");
    ASSERT_EQ(Get(later).Title, "Retagged");
    ASSERT_EQ(m_cache.UpperBound(), 3);
    EXPECT_EQ(title(later), "Retagged");
    EXPECT_EQ(m_cache.UpperBound(), 3);
    EXPECT_EQ(m_total, 5);
    EXPECT_EQ(m_hits, 3);

    // Searches ahead of files whose turn never comes are passed over; a file searched twice
    // ahead (the same name in two folders) takes one search a turn. ("kept.mp3" is left out:
    // the cache filed "later.mp3" one short of the end, behind it, where no search finds it
    // until the cache is optimised.)
    lookup.StampAhead(m_folder.File("never.mp3"));
    EXPECT_EQ(lookup.StampAhead(later), FormatStamp14(kFileTime));
    lookup.StampAhead(later);
    EXPECT_EQ(title(later), "Retagged");
    EXPECT_EQ(title(later), "Retagged");
    EXPECT_EQ(title(m_folder.File("never.mp3")), "(none)");
    EXPECT_EQ(m_total, 7);
    EXPECT_EQ(m_hits, 5);
    EXPECT_EQ(m_cache.UpperBound(), 3);
}

TEST_F(GetSongInfoTest, ALentRecordIsTheRecordGetSongInfoGives) {
    const std::string hit = m_folder.File("hit.mp3");
    const std::string read = m_folder.File("read.mp3");
    WriteSong(hit, "Hit", "Album", 7);
    WriteSong(read, "Read", "Album", 0);
    const SongInfo hitGiven = Get(hit);
    const SongInfo hitAgain = Get(hit);
    SongLookup lookup = Lookup();
    // The lent record is filled in place song after song: each lending must replace every
    // field the one before it left.
    EXPECT_EQ(LendSongInfo(hit, lookup), hitAgain);
    m_cache.Clear();
    const SongInfo readGiven = Get(read);
    m_cache.Clear();
    EXPECT_EQ(LendSongInfo(read, lookup), readGiven);
    EXPECT_TRUE(IsNonExistant(LendSongInfo(m_folder.File("missing.mp3"), lookup)));
    EXPECT_EQ(LendSongInfo(m_folder.File("missing.mp3"), lookup), NonExistantSong());
    EXPECT_EQ(hitGiven.LastUsed, "");
    EXPECT_EQ(hitAgain.LastUsed, kLookupNow) << "a hit shows the stamp of the lookup before it";
}

TEST_F(GetSongInfoTest, CountingPastTheTopOfTheCounterFails) {
    const std::string path = m_folder.File("song.mp3");
    WriteSong(path, "Song");
    m_total = std::numeric_limits<std::int32_t>::max();
    EXPECT_TRUE(IsNonExistant(Get(path)));
    EXPECT_EQ(m_total, std::numeric_limits<std::int32_t>::max());
    m_total = 0;
    Get(path);
    m_hits = std::numeric_limits<std::int32_t>::max();
    EXPECT_TRUE(IsNonExistant(Get(path)));
}

}  // namespace
}  // namespace jk
