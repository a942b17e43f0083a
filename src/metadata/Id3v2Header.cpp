#include "metadata/Id3v2Header.h"

namespace jk {

std::uint32_t SynchsafeInt(std::uint8_t b0, std::uint8_t b1, std::uint8_t b2, std::uint8_t b3) {
    return (static_cast<std::uint32_t>(b0 & 0x7F) << 21) |
           (static_cast<std::uint32_t>(b1 & 0x7F) << 14) |
           (static_cast<std::uint32_t>(b2 & 0x7F) << 7) | static_cast<std::uint32_t>(b3 & 0x7F);
}

std::optional<ID3v2HeaderInfo> ParseID3v2Header(ByteView bytes) {
    if (bytes.size() < static_cast<std::size_t>(kID3v2HeaderBytes)) {
        return std::nullopt;
    }
    const ByteView b = bytes;
    if (b[0] != 'I' || b[1] != 'D' || b[2] != '3' || b[3] == 0xFF || b[4] == 0xFF || b[6] >= 0x80 ||
        b[7] >= 0x80 || b[8] >= 0x80 || b[9] >= 0x80) {
        return std::nullopt;
    }
    ID3v2HeaderInfo info;
    info.major = b[3];
    info.revision = b[4];
    info.flags = b[5];
    info.bodySize = SynchsafeInt(b[6], b[7], b[8], b[9]);
    const bool footer = info.major >= 4 && (info.flags & 0x10) != 0;
    info.totalSize = kID3v2HeaderBytes + info.bodySize + (footer ? kID3v2HeaderBytes : 0);
    return info;
}

}  // namespace jk
