// Prints what the song reader makes of each file given, one JSON object a line, for the peer
// check against other readers and for looking at odd files by hand.
//
//   song_dump [--no-id3v2] [--no-exact] [--codepage NAME] FILE...

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "metadata/SongFileReader.h"
#include "util/FileIo.h"
#include "util/JsonString.h"

namespace {

std::string JsonString(std::string_view text) {
    std::string out;
    jk::AppendJsonString(out, text);
    return out;
}

std::string SongJson(const jk::SongInfo& song) {
    const std::pair<const char*, const std::string*> texts[] = {
        {"Title", &song.Title},      {"Artist", &song.Artist}, {"Album", &song.Album},
        {"Comment", &song.Comment},  {"Genre", &song.Genre},   {"Year", &song.Year},
        {"Bitrate", &song.Bitrate},  {"Date", &song.Date},     {"Size", &song.Size},
        {"Time", &song.Time},        {"Path", &song.Path},     {"Volume", &song.Volume},
        {"LastUsed", &song.LastUsed}};
    std::string out = "{";
    for (const auto& [name, value] : texts) {
        out += JsonString(name) + ":" + JsonString(*value) + ",";
    }
    out += "\"Reserved\":" + std::to_string(song.Reserved) +
           ",\"Track\":" + std::to_string(song.Track) + "}";
    return out;
}

}  // namespace

int main(int argc, char** argv) {
    jk::SongReadOptions options;
    std::vector<std::string> paths;
    for (int i = 1; i < argc; ++i) {
        const std::string_view arg = argv[i];
        if (arg == "--no-id3v2") {
            options.readId3v2 = false;
        } else if (arg == "--no-exact") {
            options.exactTimes = false;
        } else if (arg == "--codepage" && i + 1 < argc) {
            options.codepage = jk::SingleByteCodepage::Get(argv[++i]);
        } else if (arg == "--help" || arg.starts_with("--")) {
            std::fprintf(stderr,
                         "usage: song_dump [--no-id3v2] [--no-exact] [--codepage NAME] FILE...\n");
            return arg == "--help" ? 0 : 1;
        } else {
            paths.emplace_back(arg);
        }
    }
    jk::SongReader reader(options);
    for (const std::string& path : paths) {
        const jk::SongInfo song = reader.Read(path, jk::FileAtHand(jk::StatPath(path)));
        std::printf("%s\n", SongJson(song).c_str());
    }
    return 0;
}
