#include "metadata/SongFileReader.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "core/metadata/SongBytes.h"
#include "metadata/ByteSource.h"
#include "metadata/ReadOutcome.h"
#include "support/TempFolder.h"
#include "util/TimeHelpers.h"

namespace jk {
namespace {

using test::Bytes;
using test::Id3v1;
using test::Repeat;

SongReadOptions Options(bool id3v2, bool exact) {
    SongReadOptions options;
    options.readId3v2 = id3v2;
    options.exactTimes = exact;
    return options;
}

Outcome<SongInfo> Read(const std::string& bytes, const SongReadOptions& options) {
    MemoryByteSource source(bytes);
    return ReadSongBytes(source, options);
}

TEST(ReadSongBytes, AFileOf132BytesIsReadAndOneOf131IsNot) {
    for (const SongReadOptions& options : {Options(false, false), Options(true, true)}) {
        EXPECT_EQ(Read(Bytes(131), options).Fault(), ReadFault::TooShort);
        const auto untagged = Read(Bytes(132), options);
        ASSERT_TRUE(untagged.Ok());
        EXPECT_EQ(untagged->Genre, "Unknown");
        EXPECT_EQ(untagged->Year, "    ");
        EXPECT_EQ(untagged->Title, "");
        EXPECT_EQ(untagged->Bitrate, "128");
        EXPECT_EQ(untagged->Time, "00:00");
        EXPECT_EQ(untagged->Size, "132");
        const auto tagged = Read(Bytes(4) + Id3v1("Small"), options);
        ASSERT_TRUE(tagged.Ok());
        EXPECT_EQ(tagged->Title, "Small");
    }
}

TEST(ReadSongBytes, AnEndMarkInA137ByteFileFailsAtItsSizeDigits) {
    EXPECT_EQ(Read("LYRICS200" + Id3v1("x"), Options(false, false)).Fault(),
              ReadFault::BeforeStart);
    // In 136 bytes the mark can't stand: the file is plain ID3v1.
    EXPECT_TRUE(Read("YRICS200" + Id3v1("x"), Options(false, false)).Ok());
}

TEST(ReadSongBytes, ChoosesLyrics3ThenID3v1ThenUntagged) {
    const std::string audio = Repeat(test::Mp3Frame128(), 20);
    const std::string longTitle = "A title of more than thirty characters";
    const auto lyrics =
        Read(audio + test::Lyrics3({{"ETT", longTitle}}) + Id3v1(longTitle), Options(false, false));
    ASSERT_TRUE(lyrics.Ok());
    EXPECT_EQ(lyrics->Title, longTitle);
    EXPECT_EQ(Read(audio + Id3v1(longTitle), Options(false, false))->Title,
              longTitle.substr(0, 30));
    EXPECT_EQ(Read(audio, Options(false, false))->Genre, "Unknown");
}

TEST(ReadSongBytes, TheExtensionsAreSwitchedByTheOptions) {
    const std::string frames = test::Frame23("TIT2", std::string(1, '\0') + "From ID3v2");
    // Tag size 40,000: negative in the Parts' 16 bits, which fails the read.
    const std::string file =
        test::Id3v2Tag(3, frames, 40000) + Repeat(test::Mp3Frame128(), 100) + Id3v1("", "Artist");
    EXPECT_EQ(Read(file, Options(false, false)).Fault(), ReadFault::NegativeLength);
    EXPECT_EQ(Read(file, Options(true, false)).Fault(), ReadFault::NegativeLength);
    const auto exact = Read(file, Options(false, true));
    ASSERT_TRUE(exact.Ok());
    EXPECT_EQ(exact->Title, "");
    EXPECT_EQ(exact->Bitrate, "128");
    EXPECT_EQ(exact->Time, "00:03");
    const auto both = Read(file, Options(true, true));
    ASSERT_TRUE(both.Ok());
    EXPECT_EQ(both->Title, "From ID3v2");
    EXPECT_EQ(both->Artist, "Artist");
}

SongInfo ReadFromDisk(const std::string& path, const SongReadOptions& options,
                      const PrefetchedBytes* prefetched = nullptr) {
    return SongReader(options).Read(path, FileAtHand(StatPath(path), prefetched));
}

TEST(SongReader, FillsPathSizeDateAndVolume) {
    test::TempFolder folder;
    const std::string path = folder.Write("song.mp3 ", Bytes(400) + Id3v1("On disk"));
    SongReadOptions options = Options(true, true);
    options.volumeLabel = [](const std::string& p) { return "LABEL:" + p.substr(p.size() - 4); };
    const FileStatus status = StatPath(path);
    const SongInfo song = ReadFromDisk(path, options);
    EXPECT_EQ(song.Title, "On disk");
    EXPECT_EQ(song.Path, folder.File("song.mp3"));
    EXPECT_EQ(song.Size, "528");
    EXPECT_EQ(song.Date, FormatLocaleDateTime(status.modifiedSeconds));
    EXPECT_EQ(song.Volume, "LABEL:mp3 ");
    EXPECT_EQ(song.LastUsed, "");
    EXPECT_EQ(song.Reserved, 0);
}

TEST(SongReader, MissingShortAndNonRegularFilesAreNonExistant) {
    test::TempFolder folder;
    const SongReadOptions options = Options(true, true);
    EXPECT_TRUE(IsNonExistant(ReadFromDisk(folder.File("none.mp3"), options)));
    EXPECT_TRUE(IsNonExistant(ReadFromDisk(folder.Write("short.mp3", Bytes(131)), options)));
    EXPECT_TRUE(IsNonExistant(ReadFromDisk(folder.Path(), options)));
    EXPECT_TRUE(IsNonExistant(ReadFromDisk("/dev/zero", options)));
    // A file that shrank since its status was taken fails at the read.
    const std::string shrunk = folder.Write("shrunk.mp3", Bytes(20000));
    const FileStatus before = StatPath(shrunk);
    folder.Write("shrunk.mp3", Bytes(5000));
    EXPECT_TRUE(IsNonExistant(SongReader(options).Read(shrunk, FileAtHand(before))));
}

TEST(SongReader, ReplacesEveryFieldOfTheRecordItFills) {
    test::TempFolder folder;
    const std::string tagged = folder.Write(
        "tagged.mp3", Bytes(400) + Id3v1("Tagged", "A", "B", "1999", test::Comment11("c", 7)));
    const std::string plain = folder.Write("plain.mp3", Bytes(400));
    SongReader reader(Options(true, true));
    SongInfo song;
    for (const std::string& path : {tagged, plain, folder.File("none.mp3"), tagged}) {
        reader.ReadInto(path, FileAtHand(StatPath(path)), song);
        EXPECT_EQ(song, ReadFromDisk(path, Options(true, true))) << path;
    }
}

// A file's head and tail blocks as a read-ahead takes them.
PrefetchedBytes HeadAndTail(const std::string& path) {
    const std::string bytes = test::ReadBytes(path);
    PrefetchedBytes prefetched;
    prefetched.status = StatPath(path);
    const std::size_t head = std::min(bytes.size(), kHeadBlockBytes);
    const std::size_t tail = std::min(bytes.size() - head, kTailBlockBytes);
    prefetched.head.assign(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(head));
    prefetched.tailOffset = static_cast<std::int64_t>(bytes.size() - tail);
    prefetched.tail.assign(bytes.end() - static_cast<std::ptrdiff_t>(tail), bytes.end());
    return prefetched;
}

TEST(SongReader, ReadsFromPrefetchedBytesWithoutOpeningTheFile) {
    test::TempFolder folder;
    const std::string path =
        folder.Write("pre.mp3", Repeat(test::Mp3Frame128(), 10) + Id3v1("Prefetched"));
    const PrefetchedBytes prefetched = HeadAndTail(path);
    std::filesystem::remove(path);
    const SongInfo song =
        SongReader(Options(true, true)).Read(path, FileAtHand(prefetched.status, &prefetched));
    EXPECT_EQ(song.Title, "Prefetched");
}

TEST(SongReader, AStalePrefetchIsNotUsed) {
    test::TempFolder folder;
    const std::string path = folder.Write("stale.mp3", Bytes(400) + Id3v1("Old"));
    const PrefetchedBytes prefetched = HeadAndTail(path);
    folder.Write("stale.mp3", Bytes(500) + Id3v1("New"));
    EXPECT_EQ(ReadFromDisk(path, Options(true, true), &prefetched).Title, "New");
}

// How many reads a file costs from a cold start, with the blocks a SongReader reads first, and
// how many bytes they read.
struct ReadCost {
    int reads = 0;
    std::int64_t bytes = 0;
};

ReadCost CostOf(const std::string& path, const SongReadOptions& options) {
    FileSourceBuffers buffers;
    FileByteSource source(path, StatPath(path).size, buffers);
    PreloadSongBlocks(source, HeadBlockBytesFor(options));
    EXPECT_TRUE(ReadSongBytes(source, options).Ok());
    return {source.ReadCount(), source.BytesRead()};
}

int ReadsFor(const std::string& path, const SongReadOptions& options) {
    return CostOf(path, options).reads;
}

TEST(FileByteSource, ReadsAHeadAndATailBlock) {
    test::TempFolder folder;
    const std::string audio = Repeat(test::Mp3Frame128(), 300);
    const std::string plain = folder.Write("plain.mp3", audio + Id3v1("t"));
    EXPECT_EQ(ReadsFor(plain, Options(true, true)), 2);
    EXPECT_EQ(ReadsFor(plain, Options(false, false)), 2);
    const std::string small = folder.Write("small.mp3", Repeat(test::Mp3Frame128(), 5));
    EXPECT_EQ(ReadsFor(small, Options(true, true)), 1);
    // A 100 KB picture ahead of the text: it is read past, not read; the frames behind it and
    // the audio behind the tag cost a block each.
    const std::string picture = test::Frame23("APIC", Bytes(100000, 'p'));
    const std::string title = test::Frame23("TIT2", std::string(1, '\0') + "Pictured");
    const std::string tagged =
        folder.Write("tagged.mp3", test::Id3v2Tag(3, picture + title, 2000) + audio + Id3v1(""));
    const ReadCost pictured = CostOf(tagged, Options(true, true));
    EXPECT_EQ(pictured.reads, 4);
    EXPECT_LE(pictured.bytes, 4096 + 512 + 2 * 4096);
    SongReader reader(Options(true, true));
    EXPECT_EQ(reader.Read(tagged, FileAtHand(StatPath(tagged))).Title, "Pictured");
    // A long Lyrics3 block takes one more read at the tail.
    const std::string lyrics = test::Lyrics3({{"LYR", Bytes(5000, 'l')}, {"ETT", "x"}});
    const std::string withLyrics = folder.Write("lyrics.mp3", audio + lyrics + Id3v1("x"));
    EXPECT_EQ(ReadsFor(withLyrics, Options(false, false)), 3);
}

TEST(FileByteSource, ReadsNoMoreThanTheTagsAndTheFirstFramesNeed) {
    test::TempFolder folder;
    const std::string audio = Repeat(test::Mp3Frame128(), 300);
    const auto tagOf = [](std::size_t padding) {
        return test::Id3v2Tag(3, test::Frame23("TIT2", std::string(1, '\0') + "Tagged"), padding);
    };
    // A tag of a few hundred bytes, the first frame and the next header fit the head block:
    // no read behind it (the exact search once asked for 8 KiB behind the tag).
    const std::string small = folder.Write("small-tag.mp3", tagOf(500) + audio + Id3v1("t"));
    EXPECT_EQ(ReadsFor(small, Options(true, true)), 2);
    EXPECT_EQ(ReadsFor(small, Options(false, false)), 2);
    // Without the extensions the head block is small, and a larger tag is read past, not read:
    // one more read for what stands behind it.
    const std::string larger = folder.Write("larger-tag.mp3", tagOf(1500) + audio + Id3v1("t"));
    EXPECT_EQ(ReadsFor(larger, Options(true, true)), 2);
    EXPECT_EQ(ReadsFor(larger, Options(false, false)), 3);
    // A short Lyrics3 block lies inside the tail block.
    const std::string lyrics = test::Lyrics3({{"ETT", "A title longer than thirty characters"}});
    const std::string withLyrics = folder.Write("short-lyrics.mp3", audio + lyrics + Id3v1("x"));
    EXPECT_EQ(ReadsFor(withLyrics, Options(true, true)), 2);
    EXPECT_EQ(ReadsFor(withLyrics, Options(false, false)), 2);
}

TEST(ByteBlock, KeepsItsBytesAsItGrowsAndGivesBackLargeMemory) {
    ByteBlock block;
    block.Resize(3);
    std::copy_n("abc", 3, block.Data());
    for (const std::size_t size : {std::size_t{5000}, std::size_t{2}, std::size_t{70000}}) {
        block.Resize(size);
        EXPECT_EQ(block.Size(), size);
        EXPECT_EQ(block.Data()[0], 'a');
        EXPECT_EQ(block.Data()[1], 'b');
    }
    block.ReleaseIfAbove(1 << 20);
    EXPECT_EQ(block.Size(), 70000u);
    block.ReleaseIfAbove(1000);
    EXPECT_EQ(block.Size(), 0u);
    EXPECT_EQ(block.Capacity(), 0u);
}

TEST(FileByteSource, ServesRangesAcrossItsBlocksAndFailsOutsideTheFile) {
    test::TempFolder folder;
    std::string bytes;
    for (int i = 0; i < 100000; ++i) {
        bytes.push_back(static_cast<char>(i * 7));
    }
    const std::string path = folder.Write("bytes.bin", bytes);
    FileSourceBuffers buffers;
    FileByteSource source(path, 100000, buffers);
    PreloadSongBlocks(source);
    for (const auto& [offset, length] :
         std::vector<std::pair<std::int64_t, std::int64_t>>{{0, 10},
                                                            {8000, 500},
                                                            {50000, 100},
                                                            {98000, 1500},
                                                            {99999, 1},
                                                            {40000, 60000},
                                                            {0, 100000}}) {
        const Outcome<ByteView> view = source.View(offset, length);
        ASSERT_TRUE(view.Ok()) << offset;
        EXPECT_EQ(std::string(reinterpret_cast<const char*>(view->data()), view->size()),
                  bytes.substr(static_cast<std::size_t>(offset), static_cast<std::size_t>(length)))
            << offset;
    }
    EXPECT_EQ(source.View(-1, 2).Fault(), ReadFault::BeforeStart);
    EXPECT_EQ(source.View(99999, 2).Fault(), ReadFault::PastEnd);
    EXPECT_EQ(source.View(10, -1).Fault(), ReadFault::NegativeLength);
    EXPECT_EQ(source.View(INT64_MAX, 1).Fault(), ReadFault::PastEnd);
}

TEST(TagProbesOnAPath, FindTheTagsAtTheEnd) {
    test::TempFolder folder;
    const std::string block = test::Lyrics3({{"IND", "10"}, {"ETT", "Long"}});
    const std::string both = folder.Write("both.mp3", Bytes(300) + block + Id3v1("x"));
    const std::string id3 = folder.Write("id3.mp3", Bytes(300) + Id3v1("x"));
    EXPECT_TRUE(HasID3Tag(both));
    EXPECT_TRUE(HasLyrics3Tag(both));
    EXPECT_TRUE(HasID3Tag(id3));
    EXPECT_FALSE(HasLyrics3Tag(id3));
    EXPECT_FALSE(HasID3Tag(folder.File("missing.mp3")));
    const auto fields = ReadLyrics3Fields(both);
    ASSERT_TRUE(fields.has_value());
    ASSERT_EQ(fields->size(), 2u);
    EXPECT_EQ((*fields)[1].Data, "Long");
    EXPECT_FALSE(ReadLyrics3Fields(id3).has_value());
}

}  // namespace
}  // namespace jk
