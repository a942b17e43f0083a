#include "listing/AheadFiles.h"

#include <algorithm>
#include <span>

namespace jk {
namespace {

std::span<std::uint8_t> Bytes(std::vector<std::uint8_t>& buffer) {
    return {buffer.data(), buffer.size()};
}

void StatusOnly(const FileStatus& status, PrefetchedBytes& bytes) {
    bytes.status = status;
    bytes.head.clear();
    bytes.tail.clear();
    bytes.tailOffset = 0;
}

// Reads the blocks of one file from memory while memory holds them: a walk over files read
// lately gives the system no hints, two calls a file fewer. The first block that must come from
// the disk tells the system that reads come at random places, so that it brings only the pages
// asked for rather than the rest of a small file with them, and asks for the tail before the
// head is read, so that the disk brings both at once.
class BlockReading {
public:
    // `tailOffset` to `size`: where the tail is guessed to be.
    BlockReading(const ReadFile& file, std::int64_t tailOffset, std::int64_t size)
        : m_file(file), m_tailOffset(tailOffset), m_size(size) {}

    // True when all of `out` was read.
    bool Read(std::int64_t offset, std::span<std::uint8_t> out) {
        const auto wanted = static_cast<std::int64_t>(out.size());
        if (m_inMemory) {
            if (m_file.ReadCachedAt(offset, out) == wanted) {
                return true;
            }
            m_inMemory = false;
            m_file.ReadsAtRandom();
            if (offset + wanted <= m_tailOffset) {
                m_file.WillNeed(m_tailOffset, m_size - m_tailOffset);
            }
        }
        return m_file.ReadAt(offset, out) == wanted;
    }

    bool InMemory() const { return m_inMemory; }

private:
    const ReadFile& m_file;
    std::int64_t m_tailOffset;
    std::int64_t m_size;
    bool m_inMemory = true;
};

}  // namespace

bool ReadSongBlocks(const ReadFile& file, PrefetchedBytes& bytes) {
    const std::int64_t size = bytes.status.size;
    const std::int64_t firstBytes = std::min<std::int64_t>(size, kHeadBlockBytes);
    const std::int64_t tailGuess = std::min<std::int64_t>(size - firstBytes, kTailBlockBytes);
    BlockReading reading(file, size - tailGuess, size);
    // (The buffers are not emptied first: a read fills them to their new length.)
    bytes.head.resize(static_cast<std::size_t>(firstBytes));
    bool headRead = reading.Read(0, Bytes(bytes.head));
    if (headRead) {
        const std::int64_t wanted = HeadBytesWanted(ByteView(bytes.head), size);
        if (wanted > firstBytes) {
            bytes.head.resize(static_cast<std::size_t>(wanted));
            headRead = reading.Read(
                firstBytes, Bytes(bytes.head).subspan(static_cast<std::size_t>(firstBytes)));
        }
    }
    if (!headRead) {
        bytes.head.clear();
    }
    const auto headEnd = static_cast<std::int64_t>(bytes.head.size());
    const std::int64_t tailBytes = std::min<std::int64_t>(size - headEnd, kTailBlockBytes);
    bytes.tailOffset = size - tailBytes;
    bytes.tail.resize(static_cast<std::size_t>(tailBytes));
    if (!reading.Read(bytes.tailOffset, Bytes(bytes.tail))) {
        bytes.tail.clear();
        bytes.tailOffset = size;
    }
    return reading.InMemory();
}

const FolderHandle* DiskAheadFiles::HeldFolder::Place(std::string_view filePath) {
    const std::size_t slash = filePath.find_last_of('/');
    if (slash == std::string_view::npos || slash == 0) {
        name.assign(filePath);
        return nullptr;
    }
    const std::string_view folder = filePath.substr(0, slash);
    if (folder != path || !handle.IsOpen()) {
        path.assign(folder);
        handle = FolderHandle(path);
    }
    name.assign(handle.IsOpen() ? filePath.substr(slash + 1) : filePath);
    return handle.IsOpen() ? &handle : nullptr;
}

ReadFile DiskAheadFiles::Open(HeldFolder& held, std::string_view path) {
    const FolderHandle* folder = held.Place(path);
    return folder != nullptr ? ReadFile(*folder, held.name) : ReadFile(held.name);
}

FileStatus DiskAheadFiles::Stat(std::string_view path) {
    const FolderHandle* folder = m_read.Place(path);
    return folder != nullptr ? folder->StatAt(m_read.name) : StatPath(m_read.name);
}

bool DiskAheadFiles::ReadHeadAndTail(std::string_view path, OpenedAhead* opened,
                                     PrefetchedBytes& bytes) {
    const bool wasOpened = opened != nullptr && opened->file.IsOpen();
    const ReadFile file = wasOpened ? std::move(opened->file) : Open(m_read, path);
    if (!file.IsOpen()) {
        // It may exist and refuse to be read.
        StatusOnly(Stat(path), bytes);
        return true;
    }
    const FileStatus status = wasOpened ? opened->status : file.Status();
    if (!status.isRegular || status.size < kSmallestSongFile) {
        StatusOnly(status, bytes);  // the reader reads nothing of it
        return true;
    }
    bytes.status = status;
    return ReadSongBlocks(file, bytes);
}

void DiskAheadFiles::Expect(std::string_view path, OpenedAhead& opened) {
    ReadFile file = Open(m_expect, path);
    const FileStatus status = file.Status();
    if (!status.isRegular || status.size < kSmallestSongFile) {
        opened.file = ReadFile();
        return;
    }
    // Only the ranges named are read, whatever the file's read-ahead: these are the blocks that
    // ReadSongBlocks reads first. A larger ID3v2 tag is asked for when its header is seen.
    const std::int64_t head = std::min<std::int64_t>(status.size, kHeadBlockBytes);
    const std::int64_t tail = std::min<std::int64_t>(status.size - head, kTailBlockBytes);
    file.WillNeed(0, head);
    file.WillNeed(status.size - tail, tail);
    // Kept open, so that its reading looks up neither its name nor its status again.
    opened.file = std::move(file);
    opened.status = status;
}

}  // namespace jk
