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
#include "metadata/TagWriter.h"
#include "support/MemoryTagFile.h"

// Called by libFuzzer, or by the replay of tests/tools/fuzz_replay.cpp.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

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
    jk::test::MemoryTagFile file{std::string(text)};
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
