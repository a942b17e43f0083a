#include "metadata/ByteSource.h"

#include <algorithm>
#include <cstring>

namespace jk {
namespace {

// A read the held bytes don't cover takes at least this much, so that a walk over small
// records (frame headers) makes one read per block rather than one per record.
constexpr std::int64_t kMinBlock = 4096;

bool Covers(ByteView block, std::int64_t blockOffset, std::int64_t offset, std::int64_t length) {
    return offset >= blockOffset &&
           offset + length <= blockOffset + static_cast<std::int64_t>(block.size());
}

}  // namespace

std::string_view ReadFaultText(ReadFault fault) {
    switch (fault) {
        case ReadFault::None:
            return "no failure";
        case ReadFault::BeforeStart:
            return "read before the first byte";
        case ReadFault::PastEnd:
            return "read past the end";
        case ReadFault::NegativeLength:
            return "negative length";
        case ReadFault::Overflow16:
            return "16-bit overflow";
        case ReadFault::Overflow32:
            return "32-bit overflow";
        case ReadFault::DivideByZero:
            return "division by zero";
        case ReadFault::Io:
            return "file could not be read";
        case ReadFault::TooShort:
            return "file too short";
    }
    return "unknown failure";
}

Outcome<ByteView> ByteSource::View(std::int64_t offset, std::int64_t length) {
    if (length < 0) {
        return ReadFault::NegativeLength;
    }
    if (offset < 0) {
        return ReadFault::BeforeStart;
    }
    if (offset > m_size || length > m_size - offset) {
        return ReadFault::PastEnd;
    }
    if (length == 0) {
        return ByteView{};
    }
    const std::uint8_t* data = Fetch(offset, length);
    if (data == nullptr) {
        return ReadFault::Io;
    }
    return ByteView(data, static_cast<std::size_t>(length));
}

void ByteSource::Preload(std::int64_t /*offset*/, std::int64_t /*length*/) {}

Outcome<Done> ByteCursor::Skip(std::int64_t count) {
    if (count < 0) {
        return ReadFault::NegativeLength;
    }
    if (count > m_source.Size() - m_position) {
        return ReadFault::PastEnd;
    }
    m_position += count;
    return Done{};
}

Outcome<ByteView> ByteCursor::Read(std::int64_t count) {
    Outcome<ByteView> bytes = m_source.View(m_position, count);
    if (bytes) {
        m_position += count;
    }
    return bytes;
}

Outcome<std::uint8_t> ByteCursor::ReadByte() {
    const Outcome<ByteView> bytes = Read(1);
    if (!bytes) {
        return bytes.Fault();
    }
    return (*bytes)[0];
}

MemoryByteSource::MemoryByteSource(ByteView bytes)
    : ByteSource(static_cast<std::int64_t>(bytes.size())), m_data(bytes.data()) {}

MemoryByteSource::MemoryByteSource(std::string_view bytes)
    : ByteSource(static_cast<std::int64_t>(bytes.size())),
      m_data(reinterpret_cast<const std::uint8_t*>(bytes.data())) {}

const std::uint8_t* MemoryByteSource::Fetch(std::int64_t offset, std::int64_t /*length*/) {
    return m_data + offset;
}

void ByteBlock::Resize(std::size_t size) {
    if (size > m_capacity) {
        // Doubling keeps a head that grows block by block from copying itself each time.
        const std::size_t capacity = std::max(size, 2 * m_capacity);
        std::unique_ptr<std::uint8_t[]> grown =
            std::make_unique_for_overwrite<std::uint8_t[]>(capacity);
        if (m_size > 0) {
            std::memcpy(grown.get(), m_data.get(), m_size);
        }
        m_data = std::move(grown);
        m_capacity = capacity;
    }
    m_size = size;
}

void ByteBlock::ReleaseIfAbove(std::size_t keep) {
    if (m_capacity > keep) {
        m_data.reset();
        m_size = 0;
        m_capacity = 0;
    }
}

FileByteSource::FileByteSource(const std::string& path, std::int64_t size,
                               FileSourceBuffers& buffers, ByteView head, std::int64_t tailOffset,
                               ByteView tail)
    : ByteSource(size), m_path(path), m_buffers(buffers) {
    // Held bytes that reach past the file's length would serve bytes that are not there.
    if (static_cast<std::int64_t>(head.size()) <= size) {
        m_head = head;
    }
    if (tailOffset >= 0 && tailOffset + static_cast<std::int64_t>(tail.size()) == size) {
        m_tail = tail;
        m_tailOffset = tailOffset;
    } else {
        m_tailOffset = size;
    }
    m_buffers.scratch.Clear();
}

void FileByteSource::Adopt(ReadFile file) {
    m_file = std::move(file);
    m_openTried = true;
}

bool FileByteSource::Open() {
    if (!m_openTried) {
        m_openTried = true;
        m_file = ReadFile(m_path);
    }
    return m_file.IsOpen();
}

bool FileByteSource::ReadExact(std::int64_t offset, std::uint8_t* out, std::int64_t length) {
    if (length == 0) {
        return true;
    }
    if (!Open()) {
        return false;
    }
    ++m_reads;
    m_bytesRead += length;
    std::span<std::uint8_t> wanted{out, static_cast<std::size_t>(length)};
    if (m_fromMemory) {
        // A song read lately is in memory: its bytes are taken with no hint, one call a file
        // fewer. The first block that must come from the disk gives the hint, before it is read.
        const std::int64_t got = m_file.ReadCachedAt(offset, wanted);
        if (got == length) {
            return true;
        }
        m_fromMemory = false;
        m_file.ReadsAtRandom();
        if (got > 0) {
            offset += got;
            wanted = wanted.subspan(static_cast<std::size_t>(got));
        }
    }
    return m_file.ReadAt(offset, wanted) == static_cast<std::int64_t>(wanted.size());
}

bool FileByteSource::GrowHead(std::int64_t end) {
    end = std::min(end, Size());
    const auto held = static_cast<std::int64_t>(m_head.size());
    if (end <= held) {
        return true;
    }
    ByteBlock& store = m_buffers.head;
    if (m_head.data() != store.Data()) {
        // The head still lies in the read-ahead's memory (or is empty): copy it over to grow.
        store.Resize(static_cast<std::size_t>(held));
        if (held > 0) {
            std::memcpy(store.Data(), m_head.data(), m_head.size());
        }
    }
    store.Resize(static_cast<std::size_t>(end));
    const bool ok = ReadExact(held, store.Data() + held, end - held);
    if (!ok) {
        store.Resize(static_cast<std::size_t>(held));
    }
    m_head = store.View();
    return ok;
}

bool FileByteSource::LoadTail(std::int64_t offset) {
    offset = std::max<std::int64_t>(offset, 0);
    if (offset >= m_tailOffset) {
        return true;
    }
    const std::int64_t oldOffset = m_tailOffset;
    // The new tail is built in the scratch block's memory, then the two trade places.
    ByteBlock& grown = m_buffers.scratch;
    grown.Resize(static_cast<std::size_t>(Size() - offset));
    const std::int64_t fresh = oldOffset - offset;
    bool ok = ReadExact(offset, grown.Data(), fresh);
    if (ok && !m_tail.empty()) {
        std::memcpy(grown.Data() + fresh, m_tail.data(), m_tail.size());
    } else if (ok) {
        ok = ReadExact(oldOffset, grown.Data() + fresh, Size() - oldOffset);
    }
    if (ok) {
        swap(grown, m_buffers.tail);
        m_tail = m_buffers.tail.View();
        m_tailOffset = offset;
    }
    m_buffers.scratch.Clear();
    return ok;
}

void FileByteSource::Preload(std::int64_t offset, std::int64_t length) {
    offset = std::max<std::int64_t>(offset, 0);
    const std::int64_t end = std::min(Size(), offset + std::max<std::int64_t>(length, 0));
    if (end <= offset) {
        return;
    }
    if (offset <= static_cast<std::int64_t>(m_head.size())) {
        GrowHead(end);
    } else if (end == Size()) {
        LoadTail(offset);
    }
}

const std::uint8_t* FileByteSource::Fetch(std::int64_t offset, std::int64_t length) {
    if (Covers(m_head, 0, offset, length)) {
        return m_head.data() + offset;
    }
    if (Covers(m_tail, m_tailOffset, offset, length)) {
        return m_tail.data() + (offset - m_tailOffset);
    }
    const std::int64_t end = offset + length;
    const auto headEnd = static_cast<std::int64_t>(m_head.size());
    if (offset <= headEnd && end < m_tailOffset) {
        if (!GrowHead(std::max(end, headEnd + kMinBlock))) {
            return nullptr;
        }
        return m_head.data() + offset;
    }
    if (end >= m_tailOffset) {
        // Reaches the tail (a Lyrics3 block larger than the tail read): grow the tail backwards.
        if (!LoadTail(offset)) {
            return nullptr;
        }
        return m_tail.data() + (offset - m_tailOffset);
    }
    // A block elsewhere (behind a large ID3v2 tag): the scratch block, reused if it covers.
    ByteBlock& scratch = m_buffers.scratch;
    if (!scratch.Empty() && Covers(scratch.View(), m_scratchOffset, offset, length)) {
        return scratch.Data() + (offset - m_scratchOffset);
    }
    const std::int64_t blockEnd = std::min(std::max(end, offset + kMinBlock), m_tailOffset);
    scratch.Resize(static_cast<std::size_t>(blockEnd - offset));
    if (!ReadExact(offset, scratch.Data(), blockEnd - offset)) {
        scratch.Clear();
        return nullptr;
    }
    m_scratchOffset = offset;
    return scratch.Data();
}

}  // namespace jk
