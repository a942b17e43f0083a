#pragma once

// Reading one song file from disk into a SongInfo: the tags at the file's end (Lyrics3 2.00 and
// ID3v1), the MPEG stream at its head, and the extensions on top. This is the slow path of
// GetSongInfo; it knows nothing of the song cache.

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "metadata/ByteSource.h"
#include "metadata/Lyrics3.h"
#include "metadata/SongInfo.h"
#include "util/Codepage.h"
#include "util/FileIo.h"
#include "util/TimeHelpers.h"

namespace jk {

struct SongReadOptions {
    bool readId3v2 = true;   // the ReadID3v2 extension
    bool exactTimes = true;  // the ExactTimes extension
    // Code page of ID3v1 and Lyrics3 text; windows-1252 when null.
    std::shared_ptr<const SingleByteCodepage> codepage;
    // The volume label of the filesystem that holds a path; "" when not given.
    std::function<std::string(const std::string& path)> volumeLabel;
};

// Bytes of a file read ahead of time (on a worker thread of a folder walk), so that the reader
// needs no read of its own when they cover what it looks at. Any range they do not cover is
// read from the file as usual.
struct PrefetchedBytes {
    FileStatus status;               // the status the prefetcher saw
    std::vector<std::uint8_t> head;  // bytes from offset 0
    std::int64_t tailOffset = 0;     // where `tail` starts in the file
    std::vector<std::uint8_t> tail;  // the last bytes of the file
};

// The first reads of a file read by itself: a head block that holds a small ID3v2 tag and the
// first frames behind it, and a tail block that holds ID3v1, the Lyrics3 end mark with a short
// block, and an APEv2 footer. A larger tag or block costs one more read, sized from its header.
inline constexpr std::size_t kHeadBlockBytes = 4096;
// The head block when neither extension is on: no ID3v2 tag is read then, only the 200 bytes or
// so behind it that the bitrate search and the Xing header look at.
inline constexpr std::size_t kPlainHeadBlockBytes = 1024;
inline constexpr std::size_t kTailBlockBytes = 512;

// The head block for a reading with these options.
inline std::size_t HeadBlockBytesFor(const SongReadOptions& options) {
    return options.readId3v2 || options.exactTimes ? kHeadBlockBytes : kPlainHeadBlockBytes;
}

// How much of a file's head the reader takes in its first reads, judged from its first bytes:
// the head block, or a small ID3v2 tag with the bytes behind it. A larger tag (one that holds a
// picture) is walked frame by frame instead, its large frames passed over unread. A read-ahead
// reads as much.
std::int64_t HeadBytesWanted(ByteView firstBytes, std::int64_t size);

// A file below this many bytes can't hold an ID3v1 tag and a frame: it reads as missing.
inline constexpr std::int64_t kSmallestSongFile = 132;

// What a caller already has of a file it hands to the reader.
struct FileAtHand {
    explicit FileAtHand(const FileStatus& fileStatus, const PrefetchedBytes* bytes = nullptr,
                        ReadFile* openFile = nullptr)
        : status(fileStatus), prefetched(bytes), opened(openFile) {}

    FileStatus status;                  // as the caller took it
    const PrefetchedBytes* prefetched;  // used when they match `status`
    ReadFile* opened;                   // the file, open already: its path is not looked up again
};

// Reads song files into records: the three ways of reading a file (Lyrics3, else ID3v1, else
// untagged), with Bitrate, Time, Size, Date (the locale's text) and Volume. It keeps its buffers
// and the last file date's texts from one file to the next, so a thread that reads a folder
// allocates next to nothing once it runs: one reader per thread that reads. The song cache is
// not touched.
class SongReader {
public:
    explicit SongReader(SongReadOptions options = {});

    SongReadOptions& Options() { return m_options; }
    const SongReadOptions& Options() const { return m_options; }
    // The texts of file dates, the last one kept (shared with a caller that writes them too).
    FileDates& Dates() { return m_dates; }

    // The song at `path` into `song`, whose texts are replaced (their memory reused). A file
    // that is missing, no regular file or shorter than kSmallestSongFile, and any failure while
    // reading, give the "File non-existant" record.
    void ReadInto(const std::string& path, const FileAtHand& file, SongInfo& song);
    SongInfo Read(const std::string& path, const FileAtHand& file);

private:
    SongReadOptions m_options;
    FileSourceBuffers m_buffers;
    FileDates m_dates;
};

// The same reading over any bytes (tests, the fuzzer): every field but Path, Date and Volume.
// The failure, when there is one, says what ended the read.
Outcome<SongInfo> ReadSongBytes(ByteSource& source, const SongReadOptions& options);

// The tests of the tags at a file's end, on a path: false when the file can't be read.
bool HasID3Tag(const std::string& path);
bool HasLyrics3Tag(const std::string& path);
// The fields of the file's Lyrics3 block; nothing when it has none or it can't be read.
std::optional<std::vector<Lyrics3Field>> ReadLyrics3Fields(const std::string& path);

// The first reads of a file: the head and tail blocks, or the whole of a small file in one.
// Ranges a read-ahead already holds are not read again.
void PreloadSongBlocks(ByteSource& source, std::size_t headBytes = kHeadBlockBytes);

}  // namespace jk
