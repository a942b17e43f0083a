#include "metadata/SongInfo.h"

#include "util/Text.h"

namespace jk {

SongInfo NonExistantSong() {
    SongInfo song;
    song.Title = kFileNonExistant;
    song.Path = kFileNonExistant;
    return song;
}

bool IsNonExistant(const SongInfo& song) {
    return RTrim(song.Title) == kFileNonExistant;
}

}  // namespace jk
