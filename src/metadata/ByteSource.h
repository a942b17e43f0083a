#pragma once

// Where the song readers take their bytes from. Every reader works on a ByteSource, so that each
// rule can be tried on bytes built in a test; the file source serves what a read-ahead already
// holds and reads the rest with positioned reads, one block at a time.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "metadata/ReadOutcome.h"
#include "util/FileIo.h"

namespace jk {

using ByteView = std::span<const std::uint8_t>;

class ByteSource {
public:
    virtual ~ByteSource() = default;

    // The length of the file in bytes.
    std::int64_t Size() const { return m_size; }

    // `length` bytes from 0-based `offset`. Fails when the range begins before the first byte or
    // ends past the last one, or when `length` is negative. The view stays valid until the next
    // call of View or Preload on this source.
    Outcome<ByteView> View(std::int64_t offset, std::int64_t length);

    // A hint that the range will be read soon, so the source may read it in one go with what it
    // holds. The range is clipped to the file; nothing fails here.
    virtual void Preload(std::int64_t offset, std::int64_t length);

protected:
    explicit ByteSource(std::int64_t size) : m_size(size < 0 ? 0 : size) {}
    // The bytes of a range already checked against the file; nullptr when they can't be had.
    virtual const std::uint8_t* Fetch(std::int64_t offset, std::int64_t length) = 0;

private:
    std::int64_t m_size = 0;
};

// A read position over a source, as a file opened for binary reading keeps one: reads and skips
// move it on, and any of them that would leave the file fails.
class ByteCursor {
public:
    explicit ByteCursor(ByteSource& source, std::int64_t position = 0)
        : m_source(source), m_position(position) {}

    std::int64_t Position() const { return m_position; }  // bytes consumed so far
    bool AtEnd() const { return m_position >= m_source.Size(); }

    Outcome<Done> Skip(std::int64_t count);
    Outcome<ByteView> Read(std::int64_t count);  // valid until the source's next read
    Outcome<std::uint8_t> ReadByte();

private:
    ByteSource& m_source;
    std::int64_t m_position;
};

// Bytes held in memory (tests, the fuzzer, an ID3v2 tag undone from unsynchronisation).
class MemoryByteSource final : public ByteSource {
public:
    explicit MemoryByteSource(ByteView bytes);
    explicit MemoryByteSource(std::string_view bytes);

protected:
    const std::uint8_t* Fetch(std::int64_t offset, std::int64_t length) override;

private:
    const std::uint8_t* m_data;
};

// A block of bytes that grows without clearing what it adds: every byte a file source serves
// was written by a read first, so clearing it beforehand would be work thrown away.
class ByteBlock {
public:
    std::uint8_t* Data() { return m_data.get(); }
    const std::uint8_t* Data() const { return m_data.get(); }
    std::size_t Size() const { return m_size; }
    std::size_t Capacity() const { return m_capacity; }
    bool Empty() const { return m_size == 0; }
    ByteView View() const { return {m_data.get(), m_size}; }

    // Keeps the first min(Size(), size) bytes; the rest are undefined until written.
    void Resize(std::size_t size);
    void Clear() { m_size = 0; }
    // Gives the memory back when a file made it grow past `keep` bytes.
    void ReleaseIfAbove(std::size_t keep);

    friend void swap(ByteBlock& a, ByteBlock& b) noexcept {
        std::swap(a.m_data, b.m_data);
        std::swap(a.m_size, b.m_size);
        std::swap(a.m_capacity, b.m_capacity);
    }

private:
    std::unique_ptr<std::uint8_t[]> m_data;
    std::size_t m_size = 0;
    std::size_t m_capacity = 0;
};

// Buffers a file source keeps between files on one thread, so that reading a folder makes no
// heap traffic of its own once they have grown.
struct FileSourceBuffers {
    ByteBlock head;
    ByteBlock tail;
    ByteBlock scratch;
};

// A file of known length. Ranges inside the read-ahead's head or tail cost nothing; a range that
// starts inside the head (or right behind it) grows the head; others are read into a scratch
// block. The file is opened on the first read the held bytes don't cover, unless the caller
// handed over a file it had open already. Reads take what memory holds first; once one must go
// to the disk, the system is told that the reads come at random places, so it reads no more of
// the file than they ask for.
class FileByteSource final : public ByteSource {
public:
    // `head` and `tail` are bytes read ahead (either may be empty); `tailOffset` is where `tail`
    // starts. They must belong to the file as it is now.
    FileByteSource(const std::string& path, std::int64_t size, FileSourceBuffers& buffers,
                   ByteView head = {}, std::int64_t tailOffset = 0, ByteView tail = {});

    // Reads from `file` (the file at the path, opened by the caller) instead of opening it.
    void Adopt(ReadFile file);

    void Preload(std::int64_t offset, std::int64_t length) override;

    // How many reads of the file this source made, and of how many bytes (for tests of the
    // read budget).
    int ReadCount() const { return m_reads; }
    std::int64_t BytesRead() const { return m_bytesRead; }

protected:
    const std::uint8_t* Fetch(std::int64_t offset, std::int64_t length) override;

private:
    bool Open();
    bool ReadExact(std::int64_t offset, std::uint8_t* out, std::int64_t length);
    bool GrowHead(std::int64_t end);
    bool LoadTail(std::int64_t offset);

    const std::string& m_path;
    FileSourceBuffers& m_buffers;
    ReadFile m_file;
    bool m_openTried = false;
    bool m_fromMemory = true;  // every read so far was had from memory
    ByteView m_head;
    ByteView m_tail;
    std::int64_t m_tailOffset = 0;
    std::int64_t m_scratchOffset = 0;
    int m_reads = 0;
    std::int64_t m_bytesRead = 0;
};

}  // namespace jk
