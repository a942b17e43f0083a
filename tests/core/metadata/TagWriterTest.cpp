#include "metadata/TagWriter.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>

#include "core/metadata/SongBytes.h"
#include "metadata/SongFileReader.h"
#include "metadata/Truncater.h"
#include "support/MemoryTagFile.h"
#include "support/TempFolder.h"

namespace jk {
namespace {

using test::Bytes;
using test::Id3v1;
using test::Lyrics3;
using test::MemoryTagFile;

const SingleByteCodepage& kPage = SingleByteCodepage::Windows1252();

SongInfo Song(std::string title, std::string artist = "Artist", std::string album = "Album") {
    SongInfo song;
    song.Title = std::move(title);
    song.Artist = std::move(artist);
    song.Album = std::move(album);
    song.Year = "1999";
    song.Comment = "Comment";
    song.Genre = "Rock";
    return song;
}

SongInfo ReadBack(const std::string& bytes) {
    MemoryByteSource source(bytes);
    SongReadOptions options;
    options.readId3v2 = false;
    Outcome<SongInfo> song = ReadSongBytes(source, options);
    EXPECT_TRUE(song.Ok());
    return song.Ok() ? *song : SongInfo{};
}

const std::string kAudio = test::Repeat(test::Mp3Frame128(), 4);

TEST(BuildID3Tag, PadsWithBlanksAndPlacesTheTrackByte) {
    SongInfo song = Song("  Title  ");
    const std::string tag = *BuildID3Tag(song, kPage);
    ASSERT_EQ(tag.size(), 128u);
    EXPECT_EQ(tag.substr(0, 33), "TAG" + test::Field("Title", 30));
    EXPECT_EQ(tag.substr(93, 4), "1999");
    EXPECT_EQ(tag.substr(97, 30), test::Field("Comment", 30));
    EXPECT_EQ(static_cast<unsigned char>(tag[127]), 17);
    song.Track = 5;
    song.Genre = "No such genre";
    const std::string withTrack = *BuildID3Tag(song, kPage);
    EXPECT_EQ(withTrack.substr(97, 30), test::Field("Comment", 28) + test::Text({0, 5}));
    EXPECT_EQ(static_cast<unsigned char>(withTrack[127]), 255);
    song.Track = 255;
    EXPECT_TRUE(BuildID3Tag(song, kPage).has_value());
    song.Track = 256;
    EXPECT_FALSE(BuildID3Tag(song, kPage).has_value());
}

TEST(BuildID3Tag, CutsLongTextAndEncodesInTheCodePage) {
    SongInfo song = Song(std::string(40, 'x') + "y", "\xC3\xA9t\xC3\xA9 \xE6\x97\xA5");
    song.Year = "";
    const std::string tag = *BuildID3Tag(song, kPage);
    ASSERT_EQ(tag.size(), 128u);
    EXPECT_EQ(tag.substr(3, 30), std::string(30, 'x'));
    EXPECT_EQ(tag.substr(33, 30), test::Field("\xE9t\xE9 ?", 30));
    EXPECT_EQ(tag.substr(93, 4), "    ");
}

TEST(WriteSongTag, ShortTextsOnAnUntaggedFileWriteID3v1Alone) {
    MemoryTagFile file(kAudio);
    ASSERT_TRUE(WriteSongTag(file, Song("Short"), kPage));
    EXPECT_EQ(file.m_bytes, kAudio + *BuildID3Tag(Song("Short"), kPage));
    // A second write replaces the tag in place.
    ASSERT_TRUE(WriteSongTag(file, Song("Other"), kPage));
    EXPECT_EQ(file.m_bytes, kAudio + *BuildID3Tag(Song("Other"), kPage));
}

TEST(WriteSongTag, ALongTextOnAnUntaggedFileMakesABlockOfThreeFields) {
    MemoryTagFile file(kAudio);
    const std::string title = "A title of thirty-one letters!!";
    ASSERT_EQ(title.size(), 31u);
    ASSERT_TRUE(WriteSongTag(file, Song(title), kPage));
    const std::string block = Lyrics3({{"EAL", "Album"}, {"EAR", "Artist"}, {"ETT", title}});
    EXPECT_EQ(file.m_bytes, kAudio + block + *BuildID3Tag(Song(title), kPage));
    EXPECT_EQ(ReadBack(file.m_bytes).Title, title);
    EXPECT_EQ(file.m_bytes.substr(file.m_bytes.size() - 125, 30), title.substr(0, 30));
}

TEST(WriteSongTag, AnExistingBlockIsKeptAndOnlyItsFieldsChange) {
    const std::string old = kAudio +
                            Lyrics3({{"IND", "10"}, {"ETT", std::string(40, 't')}, {"LYR", "la"}}) +
                            Id3v1(std::string(30, 't'));
    MemoryTagFile file(old);
    ASSERT_TRUE(WriteSongTag(file, Song("Ten chars!"), kPage));
    // Missing EAR and EAL are not added for short texts; IND stays first with its size.
    const std::string block = Lyrics3({{"IND", "10"}, {"ETT", "Ten chars!"}, {"LYR", "la"}});
    EXPECT_EQ(file.m_bytes, kAudio + block + *BuildID3Tag(Song("Ten chars!"), kPage));
    const SongInfo song = ReadBack(file.m_bytes);
    EXPECT_EQ(song.Title, "Ten chars!");
}

TEST(WriteSongTag, LongTextsAppendTheMissingFieldsInOrder) {
    const std::string old = kAudio + Lyrics3({{"EAR", "Old artist"}}) + Id3v1("x");
    MemoryTagFile file(old);
    const SongInfo song = Song("T", std::string(35, 'a'), "B");
    ASSERT_TRUE(WriteSongTag(file, song, kPage));
    const std::string block = Lyrics3({{"EAR", std::string(35, 'a')}, {"ETT", "T"}, {"EAL", "B"}});
    EXPECT_EQ(file.m_bytes, kAudio + block + *BuildID3Tag(song, kPage));
}

TEST(WriteSongTag, AnEmptyFieldIsDroppedFromTheBlock) {
    MemoryTagFile file(kAudio + Lyrics3({{"ETT", "Title"}, {"EAL", "Album"}}) + Id3v1("x"));
    ASSERT_TRUE(WriteSongTag(file, Song("Title", "Artist", ""), kPage));
    EXPECT_EQ(file.m_bytes, kAudio + Lyrics3({{"ETT", "Title"}}) +
                                *BuildID3Tag(Song("Title", "Artist", ""), kPage));
}

TEST(WriteSongTag, AnID3v1TagIsOverwrittenByANewBlock) {
    MemoryTagFile file(kAudio + Id3v1("old"));
    const SongInfo song = Song(std::string(31, 'n'));
    ASSERT_TRUE(WriteSongTag(file, song, kPage));
    EXPECT_EQ(file.m_bytes.substr(0, kAudio.size()), kAudio);
    EXPECT_EQ(file.m_bytes.substr(kAudio.size(), 11), "LYRICSBEGIN");
    EXPECT_EQ(ReadBack(file.m_bytes).Title, std::string(31, 'n'));
}

TEST(WriteSongTag, AnEndMarkInsideTheAudioIsNotTakenForABlock) {
    // The audio ends in bytes that look like a block's size and end mark.
    const std::string audio = kAudio + "000300LYRICS200";
    MemoryTagFile file(audio + Id3v1("old"));
    ASSERT_TRUE(WriteSongTag(file, Song(std::string(31, 'n')), kPage));
    EXPECT_EQ(file.m_bytes.substr(0, audio.size()), audio);
    ASSERT_TRUE(StripTags(file));
    EXPECT_EQ(file.m_bytes, audio);
}

TEST(WriteSongTag, AFailedWriteNeverTouchesTheAudio) {
    const std::string audio = kAudio;
    const std::string old = audio + Lyrics3({{"ETT", std::string(50, 'o')}}) + Id3v1("o");
    for (std::int64_t budget : {0, 5, 60, 127}) {
        for (const SongInfo& song : {Song(std::string(40, 'n')), Song("short")}) {
            MemoryTagFile file(old);
            file.m_writeBudget = budget;
            EXPECT_FALSE(WriteSongTag(file, song, kPage)) << budget;
            EXPECT_EQ(file.m_bytes.substr(0, audio.size()), audio) << budget;
        }
    }
    MemoryTagFile shrink(old);
    shrink.m_failTruncate = true;
    EXPECT_FALSE(WriteSongTag(shrink, Song("x"), kPage));
    EXPECT_EQ(shrink.m_bytes.substr(0, audio.size()), audio);
    MemoryTagFile plain(audio + Id3v1("o"));
    plain.m_writeBudget = 3;
    EXPECT_FALSE(WriteSongTag(plain, Song("x"), kPage));
    EXPECT_EQ(plain.m_bytes.substr(0, audio.size()), audio);
}

TEST(WriteSongTag, ARefusalLeavesTheFileAndSaysWhy) {
    SongInfo track300 = Song("x");
    track300.Track = 300;
    // 31 fields of 32,000 bytes: the block is just under its 999,999 bytes until a title joins.
    const std::vector<std::pair<std::string, std::string>> lyrics(31,
                                                                  {"LYR", std::string(32000, 'l')});
    const struct {
        const char* what;
        std::string file;
        SongInfo song;
        TagFault fault;
        const char* fieldId;
        std::int64_t bytes;
        const char* reason;
    } cases[] = {
        {"a title over a field's 32,767 bytes", kAudio + Id3v1("old"),
         Song(std::string(32768, 't')), TagFault::FieldTooLong, "ETT", 32768,
         "Its title would take 32768 bytes in the Lyrics3 block, and a field there holds at "
         "most 32767."},
        {"an artist over it in a block", kAudio + Lyrics3({{"EAR", "a"}}) + Id3v1("old"),
         Song("t", std::string(40000, 'a')), TagFault::FieldTooLong, "EAR", 40000,
         "Its artist would take 40000 bytes in the Lyrics3 block, and a field there holds at "
         "most 32767."},
        {"a block over its 999,999 bytes", kAudio + Lyrics3(lyrics) + Id3v1("old"),
         Song(std::string(30000, 't')), TagFault::BlockTooLong, "", 1022294,
         "Its Lyrics3 block would take 1022294 bytes, and a block holds at most 999999."},
        {"a block whose field sizes can't be read",
         kAudio + Lyrics3({{"LYR", std::string(40000, 'l')}}) + Id3v1("old"), Song("t"),
         TagFault::UnreadableBlock, "", 0,
         "Its Lyrics3 block can't be read, so its other fields could not be kept."},
        {"a track beyond the tag's byte", kAudio, track300, TagFault::TrackTooLarge, "", 300,
         "The track number 300 does not fit the tag, which holds 0 to 255."},
        {"a file too short for a tag", Bytes(127), Song("x"), TagFault::FileTooShort, "", 0,
         "The file is too short to hold a tag."},
    };
    for (const auto& c : cases) {
        MemoryTagFile file(c.file);
        const TagWriteResult result = WriteSongTag(file, c.song, kPage);
        EXPECT_FALSE(result) << c.what;
        EXPECT_EQ(result.fault, c.fault) << c.what;
        EXPECT_EQ(result.fieldId, c.fieldId) << c.what;
        EXPECT_EQ(result.bytes, c.bytes) << c.what;
        EXPECT_EQ(TagFaultText(result), c.reason) << c.what;
        EXPECT_TRUE(file.m_bytes == c.file) << c.what;
    }
    // The field's limit itself is written.
    MemoryTagFile most(kAudio + Id3v1("old"));
    EXPECT_TRUE(WriteSongTag(most, Song(std::string(32767, 't')), kPage));
}

TEST(StripTags, AnEndMarkWithNoBlockIsNoTagToStrip) {
    // The end mark where a block's would stand, but no block ahead of it and no tag behind it.
    for (const std::string& tail :
         {"LYRICS200" + Bytes(128, 'x'), "000300LYRICS200" + Bytes(128)}) {
        MemoryTagFile file(kAudio + tail);
        const TagWriteResult result = StripTags(file);
        EXPECT_EQ(result.fault, TagFault::EndMarkWithoutBlock);
        EXPECT_EQ(TagFaultText(result),
                  "It has a Lyrics3 end mark, but no block ahead of it and no ID3v1 tag behind "
                  "it, so there is no tag to take off.");
        EXPECT_EQ(file.m_bytes, kAudio + tail);
    }
    MemoryTagFile none(kAudio);
    EXPECT_EQ(StripTags(none).fault, TagFault::NoTags);
}

TEST(WriteID3Tag, AFileBelow128BytesCantBeTagged) {
    MemoryTagFile file(Bytes(127));
    EXPECT_FALSE(WriteID3Tag(file, Song("x"), kPage));
    EXPECT_EQ(file.m_bytes, Bytes(127));
    SongInfo song = Song("x");
    song.Track = 300;
    MemoryTagFile audio(kAudio);
    EXPECT_FALSE(WriteID3Tag(audio, song, kPage));
    EXPECT_EQ(audio.m_bytes, kAudio);
}

TEST(StripTags, RemovesTheBlockAndTagOrTheTagOrNothing) {
    MemoryTagFile both(kAudio + Lyrics3({{"ETT", "t"}}) + Id3v1("t"));
    EXPECT_TRUE(StripTags(both));
    EXPECT_EQ(both.m_bytes, kAudio);
    MemoryTagFile id3(kAudio + Id3v1("t"));
    EXPECT_TRUE(StripTags(id3));
    EXPECT_EQ(id3.m_bytes, kAudio);
    MemoryTagFile none(kAudio);
    EXPECT_FALSE(StripTags(none));
    EXPECT_EQ(none.m_bytes, kAudio);
}

TEST(TagWriterOnDisk, WritesAReadOnlyFileAndLeavesItWritable) {
    test::TempFolder folder;
    const std::string path = folder.Write("ro.mp3", kAudio);
    ASSERT_EQ(::chmod(path.c_str(), 0444), 0);
    EXPECT_TRUE(WriteSongTag(path, Song("Read only")));
    struct stat st {};
    ASSERT_EQ(::stat(path.c_str(), &st), 0);
    EXPECT_NE(st.st_mode & S_IWUSR, 0u);
    const std::string bytes = test::ReadBytes(path);
    EXPECT_EQ(bytes.substr(0, kAudio.size()), kAudio);
    EXPECT_EQ(ReadBack(bytes).Title, "Read only");
    EXPECT_EQ(WriteSongTag(folder.File("missing.mp3"), Song("x")).fault, TagFault::FileMissing);
    EXPECT_EQ(StripTags(folder.File("missing.mp3")).fault, TagFault::FileMissing);
}

TEST(TagWriterOnDisk, TheAudioSurvivesEveryWriteAndStrip) {
    test::TempFolder folder;
    const std::string path = folder.Write("audio.mp3", kAudio);
    const SongInfo songs[] = {Song("One"), Song(std::string(45, 'l')), Song("Two"),
                              Song("Three", std::string(33, 'a'))};
    for (const SongInfo& song : songs) {
        ASSERT_TRUE(WriteSongTag(path, song));
        EXPECT_EQ(test::ReadBytes(path).substr(0, kAudio.size()), kAudio);
        EXPECT_EQ(ReadBack(test::ReadBytes(path)).Title, song.Title);
    }
    EXPECT_TRUE(StripTags(path));
    EXPECT_EQ(test::ReadBytes(path), kAudio);
    EXPECT_FALSE(StripTags(path));
}

TEST(TagWriterOnDisk, AWriteCutShortByTheFileSizeLimitKeepsTheAudio) {
    test::TempFolder folder;
    const std::string original = kAudio + Id3v1("old");
    const std::string path = folder.Write("limited.mp3", original);
    struct rlimit old {};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &old), 0);
    const auto previous = std::signal(SIGXFSZ, SIG_IGN);
    struct rlimit limited = old;
    limited.rlim_cur = original.size() + 50;
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limited), 0);
    const TagWriteResult written = WriteSongTag(path, Song(std::string(200, 'z')));
    ::setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, previous);
    EXPECT_EQ(written.fault, TagFault::FileAccess);
    EXPECT_EQ(TagFaultText(written), "");  // the writer can't tell why the file failed
    EXPECT_EQ(test::ReadBytes(path).substr(0, kAudio.size()), kAudio);
}

TEST(TruncateFile, CutsFromTheEndAndRefusesBadCounts) {
    test::TempFolder folder;
    const std::string path = folder.Write("cut.bin", "0123456789");
    EXPECT_EQ(TruncateFile(path, 3), 1);
    EXPECT_EQ(test::ReadBytes(path), "0123456");
    EXPECT_EQ(TruncateFile(path, 8), 0);
    EXPECT_EQ(TruncateFile(path, -1), 0);
    EXPECT_EQ(test::ReadBytes(path), "0123456");
    EXPECT_EQ(TruncateFile(path, 7), 1);
    EXPECT_EQ(test::ReadBytes(path), "");
    EXPECT_EQ(TruncateFile(folder.File("none"), 1), 0);
}

}  // namespace
}  // namespace jk
