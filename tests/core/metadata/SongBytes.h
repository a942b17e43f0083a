#pragma once

// Builders of song files byte by byte, for the metadata tests.

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "metadata/ByteSource.h"

namespace jk::test {

// `count` copies of `byte`.
inline std::string Bytes(std::size_t count, char byte = '\0') {
    return std::string(count, byte);
}

inline std::string Text(std::initializer_list<int> bytes) {
    std::string out;
    for (int b : bytes) {
        out.push_back(static_cast<char>(b));
    }
    return out;
}

// `text` padded with `fill` or cut to `width` bytes.
inline std::string Field(std::string_view text, std::size_t width, char fill = ' ') {
    std::string out(text.substr(0, width));
    out.append(width - out.size(), fill);
    return out;
}

// An ID3v1 tag; `comment30` is the whole 30-byte comment area as it stands.
inline std::string Id3v1(std::string_view title, std::string_view artist = "",
                         std::string_view album = "", std::string_view year = "2001",
                         std::string_view comment30 = "", int genre = 17) {
    return "TAG" + Field(title, 30) + Field(artist, 30) + Field(album, 30) + Field(year, 4) +
           Field(comment30, 30) + Text({genre});
}

// An ID3v1.1 comment area: 28 bytes, a zero and the track byte.
inline std::string Comment11(std::string_view comment, int track) {
    return Field(comment, 28) + Text({0, track});
}

// A Lyrics3 2.00 block with its size and end mark, from id/data pairs.
inline std::string Lyrics3(const std::vector<std::pair<std::string, std::string>>& fields) {
    std::string block = "LYRICSBEGIN";
    for (const auto& [id, data] : fields) {
        char size[8];
        std::snprintf(size, sizeof size, "%05zu", data.size());
        block += id + size + data;
    }
    char total[8];
    std::snprintf(total, sizeof total, "%06zu", block.size());
    return block + total + "LYRICS200";
}

// An ID3v2 header of the given version, flags and body size (synchsafe).
inline std::string Id3v2Header(int major, int flags, std::uint32_t size) {
    return Text({'I', 'D', '3', major, 0, flags, static_cast<int>((size >> 21) & 0x7F),
                 static_cast<int>((size >> 14) & 0x7F), static_cast<int>((size >> 7) & 0x7F),
                 static_cast<int>(size & 0x7F)});
}

inline std::string BigEndian32(std::uint32_t v) {
    return Text({static_cast<int>(v >> 24), static_cast<int>((v >> 16) & 0xFF),
                 static_cast<int>((v >> 8) & 0xFF), static_cast<int>(v & 0xFF)});
}

inline std::string Synchsafe32(std::uint32_t v) {
    return Text({static_cast<int>((v >> 21) & 0x7F), static_cast<int>((v >> 14) & 0x7F),
                 static_cast<int>((v >> 7) & 0x7F), static_cast<int>(v & 0x7F)});
}

// An ID3v2.3 frame (plain size) or 2.4 frame (synchsafe size).
inline std::string Frame23(std::string_view id, std::string_view body) {
    return std::string(id) + BigEndian32(static_cast<std::uint32_t>(body.size())) + Bytes(2) +
           std::string(body);
}
inline std::string Frame24(std::string_view id, std::string_view body, int flags2 = 0) {
    return std::string(id) + Synchsafe32(static_cast<std::uint32_t>(body.size())) +
           Text({0, flags2}) + std::string(body);
}
inline std::string Frame22(std::string_view id, std::string_view body) {
    const auto n = static_cast<std::uint32_t>(body.size());
    return std::string(id) +
           Text({static_cast<int>(n >> 16), static_cast<int>((n >> 8) & 0xFF),
                 static_cast<int>(n & 0xFF)}) +
           std::string(body);
}

// A whole ID3v2 tag around frames, with `padding` zero bytes behind them.
inline std::string Id3v2Tag(int major, const std::string& frames, std::size_t padding = 0,
                            int flags = 0) {
    const std::string body = frames + Bytes(padding);
    return Id3v2Header(major, flags, static_cast<std::uint32_t>(body.size())) + body;
}

// MPEG-1 Layer III, 128 kbit/s, 44100 Hz, stereo, no padding: 417 bytes.
inline std::string Mp3Frame128(std::string_view body = "") {
    std::string frame = Text({0xFF, 0xFB, 0x90, 0x00});
    frame += body;
    frame.resize(417, '\x55');
    return frame;
}

// A frame of any header; `length` bytes in all.
inline std::string MpegFrame(int b1, int b2, int b3, std::size_t length,
                             std::string_view body = "") {
    std::string frame = Text({0xFF, b1, b2, b3});
    frame += body;
    frame.resize(length, '\x55');
    return frame;
}

inline std::string Repeat(const std::string& unit, std::size_t times) {
    std::string out;
    out.reserve(unit.size() * times);
    for (std::size_t i = 0; i < times; ++i) {
        out += unit;
    }
    return out;
}

// A file of any length that holds `head` at its start, `tail` at its end and zeros between,
// without holding them all in memory.
class SparseSource final : public ByteSource {
public:
    SparseSource(std::int64_t size, std::string head, std::string tail = "")
        : ByteSource(size), m_head(std::move(head)), m_tail(std::move(tail)) {}

protected:
    const std::uint8_t* Fetch(std::int64_t offset, std::int64_t length) override {
        m_block.assign(static_cast<std::size_t>(length), 0);
        const std::int64_t tailStart = Size() - static_cast<std::int64_t>(m_tail.size());
        for (std::int64_t i = 0; i < length; ++i) {
            const std::int64_t at = offset + i;
            if (at < static_cast<std::int64_t>(m_head.size())) {
                m_block[static_cast<std::size_t>(i)] =
                    static_cast<std::uint8_t>(m_head[static_cast<std::size_t>(at)]);
            } else if (at >= tailStart) {
                m_block[static_cast<std::size_t>(i)] =
                    static_cast<std::uint8_t>(m_tail[static_cast<std::size_t>(at - tailStart)]);
            }
        }
        return m_block.data();
    }

private:
    std::string m_head;
    std::string m_tail;
    std::vector<std::uint8_t> m_block;
};

}  // namespace jk::test
