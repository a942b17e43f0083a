// Feeds any bytes to the song reader (extensions on and off), the Lyrics3 block parser and the
// tag writer over a file in memory. None of them may crash, hang or touch bytes ahead of the
// tags it found.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>
#include <string_view>

#include "metadata/ByteSource.h"
#include "metadata/Lyrics3.h"
#include "metadata/SongFileReader.h"
#include "metadata/TagFile.h"
#include "metadata/TagWriter.h"

namespace {

class MemoryTagFile final : public jk::TagFile {
public:
    explicit MemoryTagFile(std::string bytes) : m_bytes(std::move(bytes)) {}
    std::int64_t Size() const override { return static_cast<std::int64_t>(m_bytes.size()); }
    bool ReadAt(std::int64_t offset, std::span<std::uint8_t> out) override {
        if (offset < 0 || offset + static_cast<std::int64_t>(out.size()) > Size()) {
            return false;
        }
        std::copy_n(m_bytes.begin() + offset, out.size(), out.begin());
        return true;
    }
    bool WriteAt(std::int64_t offset, std::span<const std::uint8_t> data) override {
        const auto at = static_cast<std::size_t>(offset);
        if (m_bytes.size() < at + data.size()) {
            m_bytes.resize(at + data.size());
        }
        std::copy(data.begin(), data.end(), m_bytes.begin() + static_cast<std::ptrdiff_t>(at));
        m_lowestWrite = std::min(m_lowestWrite, offset);
        return true;
    }
    bool TruncateTo(std::int64_t length) override {
        m_bytes.resize(static_cast<std::size_t>(length));
        m_lowestWrite = std::min(m_lowestWrite, length);
        return true;
    }
    std::string m_bytes;
    std::int64_t m_lowestWrite = INT64_MAX;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const jk::ByteView bytes(data, size);
    for (const bool id3v2 : {false, true}) {
        for (const bool exact : {false, true}) {
            jk::SongReadOptions options;
            options.readId3v2 = id3v2;
            options.exactTimes = exact;
            jk::MemoryByteSource source(bytes);
            (void)jk::ReadSongBytes(source, options);
        }
    }
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    (void)jk::ParseLyrics3Block(text);

    // The writer may only write at or behind the tags the readers see at the end.
    MemoryTagFile file{std::string(text)};
    jk::MemoryByteSource before(bytes);
    std::int64_t tagsStart = static_cast<std::int64_t>(size);
    if (const auto block = jk::GenuineLyrics3BlockSize(before)) {
        tagsStart -= *block + 15 + 128;
    } else if (size >= 128 && text.substr(size - 128, 3) == "TAG") {
        tagsStart -= 128;
    }
    jk::SongInfo song;
    song.Title = size > 40 ? std::string(text.substr(0, 40)) : "Title";
    song.Artist = "Artist";
    song.Track = static_cast<std::int16_t>(size % 300);
    (void)jk::WriteSongTag(file, song, jk::SingleByteCodepage::Windows1252());
    if (file.m_lowestWrite < tagsStart) {
        std::abort();
    }
    return 0;
}
