#include "metadata/SongFileReader.h"

#include <algorithm>
#include <span>
#include <utility>

#include "metadata/ByteSource.h"
#include "metadata/ExactStream.h"
#include "metadata/Id3v1.h"
#include "metadata/Id3v2Header.h"
#include "metadata/Id3v2Texts.h"
#include "metadata/Lyrics3.h"
#include "metadata/MpegAnalysis.h"
#include "metadata/SongReadContext.h"
#include "util/Text.h"
#include "util/TimeHelpers.h"

namespace jk {
namespace {

// The head is grown in one read to cover an ID3v2 tag and the first frames behind it, up to
// this much. A larger tag holds a picture or the like: it is walked frame by frame, reading the
// frame headers and the text frames and passing over the rest, so that its bytes never leave
// the disk.
constexpr std::int64_t kMaxHeadPreload = std::int64_t{16} * 1024;
// Behind the tag the frame search nearly always settles within a frame and the next header (a
// Layer III frame is at most 1441 bytes) plus the VBR header; it reads further itself if not.
constexpr std::int64_t kAfterTagBytes = 2048;
// The Xing header lies within this many bytes of the first frame's start.
constexpr std::int64_t kXingReach = 200;
// Buffers kept by a reading thread are released when a file made them grow past this.
constexpr std::size_t kKeptBufferBytes = 2 << 20;

void PreloadHead(ByteSource& source, const SongReadOptions& options) {
    if (options.readId3v2 || options.exactTimes) {
        if (source.Size() < kID3v2HeaderBytes) {
            return;
        }
        const Outcome<ByteView> head = source.View(0, kID3v2HeaderBytes);
        const std::optional<ID3v2HeaderInfo> tag = head ? ParseID3v2Header(*head) : std::nullopt;
        const std::int64_t tagEnd = tag ? tag->totalSize : 0;
        if (tagEnd + kAfterTagBytes <= kMaxHeadPreload) {
            source.Preload(0, tagEnd + kAfterTagBytes);
        }
    }
    if (!options.exactTimes) {
        const std::int16_t skip = GetID3v2Size(source);
        if (skip > 0) {
            source.Preload(0, skip + kXingReach);
        }
    }
}

}  // namespace

std::int64_t HeadBytesWanted(ByteView firstBytes, std::int64_t size) {
    auto wanted = static_cast<std::int64_t>(kHeadBlockBytes);
    if (const std::optional<ID3v2HeaderInfo> tag = ParseID3v2Header(firstBytes)) {
        const std::int64_t withBehind = tag->totalSize + kAfterTagBytes;
        if (withBehind <= kMaxHeadPreload) {
            wanted = std::max(wanted, withBehind);
        }
    }
    return std::min(wanted, size);
}

namespace {

bool UsablePrefetch(const PrefetchedBytes* prefetched, const FileStatus& status) {
    return prefetched != nullptr && prefetched->status.exists &&
           prefetched->status.size == status.size &&
           prefetched->status.modifiedSeconds == status.modifiedSeconds &&
           prefetched->status.inode == status.inode && prefetched->status.device == status.device;
}

// ReadSongBytes into `song`, a blank record, so the reading of a file makes no copies of it.
Outcome<Done> ReadSongBytesInto(ByteSource& source, const SongReadOptions& options,
                                SongInfo& song) {
    if (source.Size() < kSmallestSongFile) {
        return ReadFault::TooShort;
    }
    const SingleByteCodepage& page =
        options.codepage ? *options.codepage : SingleByteCodepage::Windows1252();
    const SongReadContext context{page, options.exactTimes};
    PreloadHead(source, options);
    const Outcome<Done> read = HasLyrics3Tag(source) ? ReadLyrics3SongInto(source, context, song)
                               : HasID3Tag(source)   ? ReadID3SongInto(source, context, song)
                                                     : ReadUntaggedSongInto(source, context, song);
    if (!read) {
        return read;
    }
    if (options.readId3v2) {
        MergeID3v2Texts(song, ReadID3v2Texts(source));
    }
    song.Size = std::to_string(source.Size());
    return Done{};
}

}  // namespace

Outcome<SongInfo> ReadSongBytes(ByteSource& source, const SongReadOptions& options) {
    SongInfo song;
    if (const Outcome<Done> read = ReadSongBytesInto(source, options, song); !read) {
        return read.Fault();
    }
    return song;
}

void PreloadSongBlocks(ByteSource& source, std::size_t headBytes) {
    const std::int64_t size = source.Size();
    const auto head = static_cast<std::int64_t>(headBytes);
    const auto tail = static_cast<std::int64_t>(kTailBlockBytes);
    if (size <= head + tail) {
        source.Preload(0, size);
    } else {
        source.Preload(0, head);
        source.Preload(size - tail, tail);
    }
}

namespace {

// Runs `probe` over the file's tail (and whatever else it reads), on a source of its own.
template <typename Probe>
auto OverFile(const std::string& path, Probe probe)
    -> decltype(probe(std::declval<ByteSource&>())) {
    const FileStatus status = StatPath(path);
    if (!status.exists || !status.isRegular) {
        return {};
    }
    FileSourceBuffers buffers;
    FileByteSource source(path, status.size, buffers);
    const auto tail = static_cast<std::int64_t>(kTailBlockBytes);
    source.Preload(std::max<std::int64_t>(status.size - tail, 0), tail);
    return probe(source);
}

}  // namespace

bool HasID3Tag(const std::string& path) {
    return OverFile(path, [](ByteSource& source) { return HasID3Tag(source); });
}

bool HasLyrics3Tag(const std::string& path) {
    return OverFile(path, [](ByteSource& source) { return HasLyrics3Tag(source); });
}

std::optional<std::vector<Lyrics3Field>> ReadLyrics3Fields(const std::string& path) {
    return OverFile(path, [](ByteSource& source) -> std::optional<std::vector<Lyrics3Field>> {
        if (!HasLyrics3Tag(source)) {
            return std::nullopt;
        }
        Outcome<std::vector<Lyrics3Field>> fields = ReadLyrics3Fields(source);
        if (!fields) {
            return std::nullopt;
        }
        return std::move(fields).Value();
    });
}

namespace {

// `song` emptied for a reading to fill, its texts' memory kept.
void Blank(SongInfo& song) {
    for (std::string* text : {&song.Title, &song.Artist, &song.Album, &song.Comment, &song.Genre,
                              &song.Year, &song.Bitrate, &song.Date, &song.Size, &song.Time,
                              &song.Path, &song.Volume, &song.LastUsed}) {
        text->clear();
    }
    song.Reserved = 0;
    song.Track = 0;
}

void MarkNonExistant(SongInfo& song) {
    Blank(song);
    song.Title = kFileNonExistant;
    song.Path = kFileNonExistant;
}

}  // namespace

SongReader::SongReader(SongReadOptions options) : m_options(std::move(options)) {}

void SongReader::ReadInto(const std::string& path, const FileAtHand& file, SongInfo& song) {
    const FileStatus& status = file.status;
    // Only a regular file is a song: a device or a pipe could block the read for ever.
    if (!status.exists || !status.isRegular || status.size < kSmallestSongFile) {
        MarkNonExistant(song);
        return;
    }
    Blank(song);
    Outcome<Done> read = ReadFault::Io;
    {
        const PrefetchedBytes* prefetched = file.prefetched;
        FileByteSource source = UsablePrefetch(prefetched, status)
                                    ? FileByteSource(path, status.size, m_buffers, prefetched->head,
                                                     prefetched->tailOffset, prefetched->tail)
                                    : FileByteSource(path, status.size, m_buffers);
        if (file.opened != nullptr && file.opened->IsOpen()) {
            source.Adopt(std::move(*file.opened));
        }
        PreloadSongBlocks(source, HeadBlockBytesFor(m_options));
        read = ReadSongBytesInto(source, m_options, song);
    }
    m_buffers.head.ReleaseIfAbove(kKeptBufferBytes);
    m_buffers.tail.ReleaseIfAbove(kKeptBufferBytes);
    m_buffers.scratch.ReleaseIfAbove(kKeptBufferBytes);
    if (!read) {
        MarkNonExistant(song);
        return;
    }
    song.Path.assign(RTrim(path));
    song.Date = m_dates.LocaleText(status.modifiedSeconds);
    if (m_options.volumeLabel) {
        song.Volume = m_options.volumeLabel(path);
    }
}

SongInfo SongReader::Read(const std::string& path, const FileAtHand& file) {
    SongInfo song;
    ReadInto(path, file, song);
    return song;
}

}  // namespace jk
