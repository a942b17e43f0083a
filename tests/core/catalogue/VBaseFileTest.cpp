#include "catalogue/VBaseFile.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "CatalogueTestSupport.h"
#include "catalogue/SongCache.h"
#include "catalogue/VBaseFormat.h"
#include "util/Utf8.h"

namespace jk {
namespace {

using namespace std::string_literals;
using test::Field;
using test::Header;
using test::ReadBytes;
using test::TempFolder;
using test::WriteBytes;

SongInfo BlueSong() {
    SongInfo song;
    song.Title = "Blue Song";
    song.Artist = "Artist";
    song.Album = "Blue ";
    song.Year = "1999";
    song.Genre = "Rock";
    song.Time = "0345";
    song.Bitrate = " 128";
    song.Path = "blue song.mp3";
    song.Size = "4000";
    song.Date = "20240101000000";
    song.LastUsed = "20240601120000";
    song.Track = 7;
    return song;
}

// The file of BlueSong, written out by hand.
// clang-format off
const std::string kBlueSongFile =
    "VBASE 1.0013       1"s
    "\x00\x09" "Blue Song" "\x00\x06" "Artist" "\x00\x09" "Blue - 07" "\x00\x04" "1999"s
    "\x00\x04" "Rock" "\x00\x04" "0345" "\x00\x04" " 128" "\x00\x0D" "blue song.mp3"s
    "\x00\x00" "\x00\x04" "4000" "\x00\x00" "\x00\x0E" "20240101000000"s
    "\x00\x0E" "20240601120000"s;
// clang-format on

// One record of plain fields, in key order.
std::string Record(const std::vector<std::string>& fields) {
    std::string out;
    for (const std::string& field : fields) {
        out += Field(field);
    }
    return out;
}

std::string SimpleRecord(std::string_view key) {
    std::vector<std::string> fields(13);
    fields[kKeyPath - 1] = key;
    return Record(fields);
}

TEST(SaveVBase, WritesTheContainerByteForByte) {
    TempFolder folder;
    SongCache cache = test::CacheOf({BlueSong()});
    ASSERT_TRUE(SaveVBase(folder.File("cache.dat"), cache).ok);
    EXPECT_EQ(ReadBytes(folder.File("cache.dat")), kBlueSongFile);
    // The suffix is put on the record in memory as well.
    EXPECT_EQ(cache.Record(1).Album, "Blue - 07");

    std::vector<SongInfo> songs = {BlueSong()};
    ASSERT_TRUE(SaveVBase(folder.File("image.jvd"), songs).ok);
    EXPECT_EQ(ReadBytes(folder.File("image.jvd")), kBlueSongFile);
    EXPECT_EQ(songs[0].Album, "Blue - 07");
}

TEST(SaveVBase, TheTrackSuffixIsWrittenOnceAcrossAReload) {
    TempFolder folder;
    const std::string path = folder.File("cache.dat");
    SongCache cache = test::CacheOf({BlueSong()});
    ASSERT_TRUE(SaveVBase(path, cache).ok);
    ASSERT_TRUE(LoadVBase(path, cache));
    EXPECT_EQ(cache.Record(1).Album, "Blue - 07");
    EXPECT_EQ(cache.TrackOf(1), 0);
    ASSERT_TRUE(SaveVBase(path, cache).ok);
    EXPECT_EQ(ReadBytes(path), kBlueSongFile);
}

TEST(SaveVBase, AFlushedCacheWritesAHeaderWithCountZero) {
    TempFolder folder;
    SongCache cache = test::CacheOf({BlueSong()});
    cache.Clear();
    ASSERT_TRUE(SaveCache(cache, folder.Path()).ok);
    EXPECT_EQ(ReadBytes(folder.File("cache.dat")), "VBASE 1.0013       0");
}

TEST(SaveVBase, LengthsCountBytesAndALongFieldIsCutAtACharacter) {
    TempFolder folder;
    SongInfo song;
    song.Title = "\xC3\xA9";                              // 2 bytes, 1 character
    song.Comment = std::string(65534, 'c') + "\xC3\xA9";  // 65536 bytes
    song.Artist = std::string(65535, 'a');                // exactly the most a field holds
    std::vector<SongInfo> songs = {song};
    ASSERT_TRUE(SaveVBase(folder.File("x.jvd"), songs).ok);
    const std::string bytes = ReadBytes(folder.File("x.jvd"));
    EXPECT_EQ(bytes.substr(20, 4), "\x00\x02\xC3\xA9"s);
    EXPECT_EQ(bytes.substr(24, 2), "\xFF\xFF");
    const std::size_t comment = 24 + 2 + 65535 + 6 * 2;  // Album to Path blank
    EXPECT_EQ(bytes.substr(comment, 2), "\xFF\xFE");     // 65534: the "é" would straddle the cut

    std::vector<SongInfo> back;
    ASSERT_TRUE(LoadVBase(folder.File("x.jvd"), back));
    ASSERT_EQ(back.size(), 1u);
    EXPECT_EQ(back[0].Title, "\xC3\xA9");
    EXPECT_EQ(back[0].Artist.size(), 65535u);
    EXPECT_EQ(back[0].Comment, std::string(65534, 'c'));
}

TEST(LoadVBase, TrimsFieldsAndPassesBitrateThroughItsNumber) {
    struct Case {
        std::string bitrate;
        std::string expected;
    };
    for (const Case& c : std::vector<Case>{{"128", " 128"},
                                           {"  64 ", "  64"},
                                           {"0128", " 128"},
                                           {"1411", "1411"},
                                           {"99999", "99999"},
                                           {"", "   0"},
                                           {"VBR", "   0"},
                                           {"96k", "  96"}}) {
        std::vector<std::string> fields(13, "  text  ");
        fields[kKeyBitrate - 1] = c.bitrate;
        std::vector<SongInfo> songs;
        ASSERT_TRUE(LoadVBaseFromBytes(Header("1") + Record(fields), "x.jvd", songs));
        ASSERT_EQ(songs.size(), 1u);
        EXPECT_EQ(songs[0].Bitrate, c.expected) << c.bitrate;
        EXPECT_EQ(songs[0].Title, "text");
        EXPECT_EQ(songs[0].LastUsed, "text");
    }
}

TEST(LoadVBase, AFieldThatIsNotUtf8IsReadAsWindows1252) {
    std::vector<std::string> fields(13);
    fields[kKeyTitle - 1] = "Caf\xE9 \x80";  // windows-1252 bytes
    fields[kKeyArtist - 1] = "Caf\xC3\xA9";  // UTF-8 stays
    fields[kKeyAlbum - 1] = "\xC3";          // a cut sequence is not UTF-8
    SongCache cache;
    ASSERT_TRUE(LoadVBaseFromBytes(Header("1") + Record(fields), "cache.dat", cache));
    EXPECT_EQ(cache.Record(1).Title, "Caf\xC3\xA9 \xE2\x82\xAC");
    EXPECT_EQ(cache.Record(1).Artist, "Caf\xC3\xA9");
    EXPECT_EQ(cache.Record(1).Album, "\xC3\x83");
}

TEST(SaveVBase, ATextThatIsNotUtf8IsWrittenEscapedAndReadBackByteForByte) {
    std::vector<SongInfo> songs(1);
    songs[0].Path = "caf\xE9 100%.mp3";     // a name in another encoding
    songs[0].Title = "\xC3\xA9t\xE9 \xC3";  // UTF-8, a stray byte, a cut sequence
    songs[0].Artist = "100% \xC3\xA9";      // UTF-8 with a "%": as it stands
    songs[0].Album = "\0lead"s;             // a NUL at the front would read as the mark
    songs[0].Volume = " \xFF ";             // trimmed on reading, as every field
    const std::vector<SongInfo> saved = songs;
    TempFolder folder;
    const std::string path = folder.File("cache.dat");
    ASSERT_TRUE(SaveVBase(path, songs).ok);
    const std::string bytes = ReadBytes(path);
    EXPECT_NE(bytes.find(Field("\0caf%E9 100%25.mp3"s)), std::string::npos);
    EXPECT_NE(bytes.find(Field("\0\xC3\xA9t%E9 %C3"s)), std::string::npos);
    EXPECT_NE(bytes.find(Field("100% \xC3\xA9")), std::string::npos);
    EXPECT_NE(bytes.find(Field("\0\0lead"s)), std::string::npos);
    EXPECT_TRUE(IsValidUtf8(bytes));

    std::vector<SongInfo> loaded;
    ASSERT_TRUE(LoadVBase(path, loaded));
    ASSERT_EQ(loaded.size(), 1u);
    EXPECT_EQ(loaded[0].Path, saved[0].Path);
    EXPECT_EQ(loaded[0].Title, saved[0].Title);
    EXPECT_EQ(loaded[0].Artist, saved[0].Artist);
    EXPECT_EQ(loaded[0].Album, saved[0].Album);
    EXPECT_EQ(loaded[0].Volume, "\xFF");

    // A long escaped text is cut ahead of the escape that would straddle the cut.
    songs.assign(1, SongInfo{});
    songs[0].Genre = std::string(21845, '\xFF');  // escaped: 1 + 3 * 21845 = 65536 bytes
    EXPECT_FALSE(FitsVBaseField(songs[0].Genre));
    EXPECT_TRUE(FitsVBaseField(std::string(21844, '\xFF')));
    ASSERT_TRUE(SaveVBase(path, songs).ok);
    ASSERT_TRUE(LoadVBase(path, loaded));
    EXPECT_EQ(loaded[0].Genre, std::string(21844, '\xFF'));

    // A damaged escape keeps what it can: a "%" without two hex digits stands for itself.
    std::vector<std::string> fields(13);
    fields[kKeyPath - 1] = "\0a%4"s;
    fields[kKeyTitle - 1] = "\0%zz%4a"s;
    ASSERT_TRUE(LoadVBaseFromBytes(Header("1") + Record(fields), "x.dat", loaded));
    EXPECT_EQ(loaded[0].Path, "a%4");
    EXPECT_EQ(loaded[0].Title, "%zzJ");
}

TEST(SaveVBase, ACachedRecordIsEscapedFieldByFieldThoughItsTextsLieBackToBack) {
    // A cached record keeps its texts back to back, and they are checked as one: a character
    // cut between two fields makes the whole valid UTF-8, but neither field.
    struct Case {
        std::string title;
        std::string artist;
        bool asItStands;
    };
    const std::vector<Case> cases = {
        {"caf\xC3", "\xA9 blue", false},  // a character split across Title and Artist
        {"caf\xC3\xA9", "blue", true},   {"caf\xE9", "blue", false},  // a stray byte
        {"\0lead"s, "blue", false},                                   // begins with the mark
        {"blue", "\xC3", false},  // a cut sequence at the end of a field
        {"blue", "\xE2\x82\xAC", true},
    };
    std::vector<SongInfo> songs;
    for (std::size_t i = 0; i < cases.size(); ++i) {
        SongInfo song = BlueSong();
        song.Title = cases[i].title;
        song.Artist = cases[i].artist;
        song.Path = "song " + std::to_string(i) + ".mp3";
        songs.push_back(song);
    }
    SongCache cache = test::CacheOf(songs);
    TempFolder folder;
    const std::string path = folder.File("cache.dat");
    ASSERT_TRUE(SaveVBase(path, cache).ok);
    const std::string bytes = ReadBytes(path);
    EXPECT_TRUE(IsValidUtf8(bytes));
    std::vector<SongInfo> loaded;
    ASSERT_TRUE(LoadVBase(path, loaded));
    ASSERT_EQ(loaded.size(), cases.size());
    for (std::size_t i = 0; i < cases.size(); ++i) {
        EXPECT_EQ(loaded[i].Title, cases[i].title) << i;
        EXPECT_EQ(loaded[i].Artist, cases[i].artist) << i;
        EXPECT_EQ(bytes.find(Field(cases[i].title) + Field(cases[i].artist)) != std::string::npos,
                  cases[i].asItStands)
            << i;
    }
}

TEST(LoadVBase, AFieldEndingAtTheLastByteIsAcceptedAndOneByteMoreIsDamage) {
    const std::string complete = Header("2") + SimpleRecord("a") + SimpleRecord("bb");
    SongCache cache;
    EXPECT_TRUE(LoadVBaseFromBytes(complete, "cache.dat", cache));
    EXPECT_EQ(test::KeysOf(cache), (std::vector<std::string>{"a", "bb"}));

    // The last field (LastUsed, empty) claims one byte that is not there.
    std::string damaged = complete;
    damaged[damaged.size() - 1] = 1;
    EXPECT_FALSE(LoadVBaseFromBytes(damaged, "cache.dat", cache));
    EXPECT_EQ(test::KeysOf(cache), (std::vector<std::string>{"a", ""}));

    // A file cut short keeps the announced size, the rest blank.
    std::vector<SongInfo> songs;
    EXPECT_FALSE(LoadVBaseFromBytes(
        Header("3") + SimpleRecord("a") + SimpleRecord("b") + SimpleRecord("c").substr(0, 26),
        "x.jvd", songs));
    ASSERT_EQ(songs.size(), 3u);
    EXPECT_EQ(songs[1].Path, "b");
    EXPECT_EQ(songs[2], SongInfo());
}

TEST(LoadVBase, NeverMakesMoreRecordsThanTheFileCouldHold) {
    const std::string bytes = Header("99999999") + SimpleRecord("a") + SimpleRecord("b");
    std::vector<SongInfo> songs;
    EXPECT_FALSE(LoadVBaseFromBytes(bytes, "x.jvd", songs));
    EXPECT_LE(songs.size(), (bytes.size() - 20) / 26);
    EXPECT_EQ(songs[0].Path, "a");

    SongCache cache;
    EXPECT_FALSE(LoadVBaseFromBytes(Header("99999999"), "cache.dat", cache));
    EXPECT_EQ(cache.UpperBound(), 0);
}

TEST(LoadVBase, ReadsOnlyTheAnnouncedRecordsAndTheFieldsAnnounced) {
    std::vector<SongInfo> songs;
    ASSERT_TRUE(
        LoadVBaseFromBytes(Header("1") + SimpleRecord("a") + SimpleRecord("b"), "x.jvd", songs));
    EXPECT_EQ(songs.size(), 1u);

    // Fourteen fields a record: the extra one is passed over.
    std::vector<std::string> fields(14, "f");
    fields[kKeyPath - 1] = "a";
    ASSERT_TRUE(
        LoadVBaseFromBytes(Header("2", "14") + Record(fields) + Record(fields), "x.jvd", songs));
    ASSERT_EQ(songs.size(), 2u);
    EXPECT_EQ(songs[1].Path, "a");
    EXPECT_EQ(songs[1].LastUsed, "f");
}

TEST(LoadVBase, EmptyMissingAndOddHeaders) {
    TempFolder folder;
    std::vector<SongInfo> songs = {SongInfo()};
    EXPECT_TRUE(LoadVBase(folder.File("missing.jvd"), songs));
    EXPECT_TRUE(songs.empty());

    EXPECT_TRUE(LoadVBaseFromBytes(Header("0"), "x.jvd", songs));
    EXPECT_TRUE(LoadVBaseFromBytes("VBASE", "x.jvd", songs));
    EXPECT_TRUE(songs.empty());
    EXPECT_FALSE(LoadVBaseFromBytes(Header("-3") + SimpleRecord("a"), "x.jvd", songs));
    EXPECT_FALSE(LoadVBaseFromBytes(Header("1", "0") + SimpleRecord("a"), "x.jvd", songs));
    EXPECT_TRUE(songs.empty());

    // The version text is not looked at; only the name picks another reader.
    ASSERT_TRUE(LoadVBaseFromBytes(Header("1", "13", "VBASE 1.01") + SimpleRecord("a"), "image.jvd",
                                   songs));
    EXPECT_EQ(songs.size(), 1u);
}

TEST(LoadVBase, HandsTheDriveDatabaseToItsOwnReader) {
    TempFolder folder;
    const std::string path = folder.File("Master.dat");
    WriteBytes(path, Header("1", "13", "VBASE 1.01") + SimpleRecord("a"));
    std::string handed;
    std::vector<SongInfo> songs = {SongInfo()};
    EXPECT_FALSE(LoadVBase(path, songs, [&](const std::string& p) {
        handed = p;
        return false;
    }));
    EXPECT_EQ(handed, path);
    EXPECT_TRUE(songs.empty());
}

TEST(LoadVBase, ReadsTheOlderTextForms) {
    // Fields: Path, LastUsed, Date, Title, Artist, Album, Year, Genre, Comment, Bitrate, Time,
    // Size, Volume, each ended by a backspace.
    const std::string line =
        "song.mp3\b20240101000000\b20230101000000\bTitle\bArtist\bAlbum\b1999\bRock\bCaf\xE9\b"
        "128\b0345\b4000\bDisc\b\r\n";
    const std::string skipped = "\bnot a record\b\r\n";
    std::vector<SongInfo> songs;

    ASSERT_TRUE(LoadVBaseFromBytes("2\r\n13\r\n" + line + skipped + line, "cache.dat", songs));
    ASSERT_EQ(songs.size(), 2u);
    const SongInfo& song = songs[0];
    EXPECT_EQ(song.Path, "song.mp3");
    EXPECT_EQ(song.LastUsed, "20240101000000");
    EXPECT_EQ(song.Date, "20230101000000");
    EXPECT_EQ(song.Title, "Title");
    EXPECT_EQ(song.Album, "Album");
    EXPECT_EQ(song.Comment, "Caf\xC3\xA9");
    EXPECT_EQ(song.Bitrate, "128");
    EXPECT_EQ(song.Time, "0345");
    EXPECT_EQ(song.Size, "4000");
    EXPECT_EQ(song.Volume, "Disc");

    // Other names begin with the field count alone; bare line feeds are taken too.
    std::string plain = "13\n" + line;
    plain.erase(plain.size() - 2, 1);
    ASSERT_TRUE(LoadVBaseFromBytes(plain, "old.jvd", songs));
    ASSERT_EQ(songs.size(), 1u);
    EXPECT_EQ(songs[0].Volume, "Disc");

    // The drive database in its older form reads into the array given.
    SongCache cache;
    ASSERT_TRUE(LoadVBaseFromBytes("1\r\n13\r\n" + line, "MASTER.DA2", cache));
    EXPECT_EQ(cache.KeyOf(1), "song.mp3");

    // A field count below 13 leaves the later fields blank.
    ASSERT_TRUE(LoadVBaseFromBytes("1\r\n3\r\n" + line, "cache.dat", songs));
    ASSERT_EQ(songs.size(), 1u);
    EXPECT_EQ(songs[0].Date, "20230101000000");
    EXPECT_EQ(songs[0].Title, "");
}

TEST(LoadVBase, ReadsALargeFileAcrossItsChunksAsFromMemory) {
    TempFolder folder;
    std::mt19937 random(5);
    SongCache cache;
    std::vector<PackedSong> records;
    for (int i = 0; i < 20000; ++i) {
        SongInfo song;
        song.Path = "song " + std::to_string(i) + ".mp3";
        song.Title = "Title " + std::to_string(random());
        song.Bitrate = " 128";
        song.Comment = i % 97 == 0 ? std::string(60000 + random() % 5000, 'x') : "c";
        records.emplace_back(song);
    }
    cache.Assign(std::move(records));
    const std::string path = folder.File("cache.dat");
    ASSERT_TRUE(SaveVBase(path, cache).ok);
    ASSERT_GT(ReadBytes(path).size(), 3u * (4u << 20));

    SongCache fromFile;
    std::int64_t lastDone = 0;
    ASSERT_TRUE(LoadVBase(path, fromFile, {}, [&](std::int64_t done, std::int64_t total) {
        EXPECT_EQ(total, 20000);
        lastDone = done;
    }));
    EXPECT_EQ(lastDone, 20000);
    SongCache fromBytes;
    ASSERT_TRUE(LoadVBaseFromBytes(ReadBytes(path), "cache.dat", fromBytes));
    ASSERT_EQ(fromFile.UpperBound(), 20000);
    ASSERT_EQ(fromBytes.UpperBound(), 20000);
    for (std::int64_t i = 1; i <= 20000; ++i) {
        ASSERT_EQ(fromFile.Record(i), cache.Record(i)) << i;
        ASSERT_EQ(fromBytes.Record(i), cache.Record(i)) << i;
    }
}

TEST(LoadCache, AMissingFileIsAnEmptyCacheAndADamagedOneIsKeptAsideOnce) {
    TempFolder folder;
    SongCache cache = test::CacheOf({BlueSong()});
    LoadCache(cache, folder.Path());
    EXPECT_EQ(cache.UpperBound(), 0);

    const std::string damaged =
        Header("2") + SimpleRecord("a") + "\x00\x40"s + std::string(30, 'j');
    WriteBytes(folder.File("cache.dat"), damaged);
    LoadCache(cache, folder.Path());
    EXPECT_EQ(test::KeysOf(cache), (std::vector<std::string>{"a", ""}));
    EXPECT_EQ(ReadBytes(folder.File("cache.dat.damaged")), damaged);

    WriteBytes(folder.File("cache.dat"), Header("5"));
    LoadCache(cache, folder.Path());
    EXPECT_EQ(ReadBytes(folder.File("cache.dat.damaged")), damaged);

    WriteBytes(folder.File("cache.dat"), Header("1") + SimpleRecord("z"));
    LoadCache(cache, folder.Path());
    EXPECT_EQ(test::KeysOf(cache), (std::vector<std::string>{"z"}));
}

}  // namespace
}  // namespace jk
