#include "playback/TempList.h"

#include "playback/PlayerKind.h"
#include "util/PathHelpers.h"
#include "util/Text.h"

namespace jk {

std::string TempListPath(std::string_view dataFolder) {
    return std::string(dataFolder) + std::string(kTempListName);
}

std::string TempListLine(std::string_view song, std::int16_t kind) {
    std::string line = kind == kPlayerWinPlay3 ? ShortPath(song) : std::string(Trim(song));
    if (line.size() >= 4 && line[2] == '\\' && line[3] == '\\') {
        line.erase(3, 1);
    }
    if (line.find_first_of("\r\n") != std::string::npos) {
        return FileUri(line);
    }
    return line;
}

IoResult WriteTempList(const std::string& path, std::span<const std::string> songs,
                       std::int16_t kind) {
    AtomicFileWriter writer(path);
    std::string block;
    for (const std::string& song : songs) {
        block += TempListLine(song, kind);
        block += "\r\n";
        if (block.size() >= std::size_t{64} * 1024) {
            writer.Write(block);
            block.clear();
        }
    }
    writer.Write(block);
    return writer.Commit();
}

}  // namespace jk
