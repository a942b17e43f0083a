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
// this much; a larger tag (a big picture) is walked frame by frame instead.
constexpr std::int64_t kMaxHeadPreload = 1 << 20;
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
        source.Preload(0, std::min(tagEnd + kAfterTagBytes, kMaxHeadPreload));
    }
    if (!options.exactTimes) {
        const std::int16_t skip = GetID3v2Size(source);
        if (skip > 0) {
            source.Preload(0, skip + kXingReach);
        }
    }
}

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

bool PrefetchSongBytes(const std::string& path, PrefetchedBytes& out) {
    out.head.clear();
    out.tail.clear();
    out.tailOffset = 0;
    ReadFile file(path);
    if (!file.IsOpen()) {
        out.status = {};
        return false;
    }
    out.status = file.Status();
    if (!out.status.isRegular) {
        return true;
    }
    const std::int64_t size = out.status.size;
    const std::int64_t headBytes = std::min<std::int64_t>(size, kPrefetchHeadBytes);
    out.head.resize(static_cast<std::size_t>(headBytes));
    const std::int64_t gotHead = file.ReadAt(0, out.head);
    out.head.resize(static_cast<std::size_t>(std::max<std::int64_t>(gotHead, 0)));
    const std::int64_t tailBytes = std::min<std::int64_t>(size - headBytes, kPrefetchTailBytes);
    out.tailOffset = size - tailBytes;
    out.tail.resize(static_cast<std::size_t>(tailBytes));
    const std::int64_t gotTail = file.ReadAt(out.tailOffset, out.tail);
    if (gotTail != tailBytes) {
        out.tail.clear();
        out.tailOffset = size;
    }
    return true;
}

SongInfo ReadSongFromDisk(const std::string& path, const FileStatus& status,
                          const SongReadOptions& options, const PrefetchedBytes* prefetched,
                          ReadFile* opened) {
    return ReadSongFromDisk(path, status, LocalMoment(status.modifiedSeconds), options, prefetched,
                            opened);
}

SongInfo ReadSongFromDisk(const std::string& path, const FileStatus& status,
                          const LocalMoment& fileTime, const SongReadOptions& options,
                          const PrefetchedBytes* prefetched, ReadFile* opened) {
    // One record, filled in place and returned as itself (no copies on the way out).
    SongInfo song;
    // Only a regular file is a song: a device or a pipe could block the read for ever.
    if (!status.exists || !status.isRegular || status.size < kSmallestSongFile) {
        song = NonExistantSong();
        return song;
    }
    thread_local FileSourceBuffers buffers;
    const std::int64_t size = status.size;
    Outcome<Done> read = ReadFault::Io;
    {
        const bool usePrefetch = UsablePrefetch(prefetched, status);
        FileByteSource source = usePrefetch
                                    ? FileByteSource(path, size, buffers, prefetched->head,
                                                     prefetched->tailOffset, prefetched->tail)
                                    : FileByteSource(path, size, buffers);
        if (opened != nullptr && opened->IsOpen()) {
            source.Adopt(std::move(*opened));
        }
        PreloadSongBlocks(source, HeadBlockBytesFor(options));
        read = ReadSongBytesInto(source, options, song);
    }
    buffers.head.ReleaseIfAbove(kKeptBufferBytes);
    buffers.tail.ReleaseIfAbove(kKeptBufferBytes);
    buffers.scratch.ReleaseIfAbove(kKeptBufferBytes);
    if (!read) {
        song = NonExistantSong();
    } else {
        song.Path = std::string(RTrim(path));
        song.Date = fileTime.LocaleText();
        song.Volume = options.volumeLabel ? options.volumeLabel(path) : std::string();
    }
    return song;
}

}  // namespace jk
