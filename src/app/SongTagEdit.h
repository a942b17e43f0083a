#pragma once

// Changing some texts of a song's tag, as the tag editing dialogs do: the song as GetSongInfo
// gave it, the " - NN" that GetSongInfo adds to Album taken off, then the changed fields.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "metadata/SongInfo.h"
#include "metadata/TagWriter.h"
#include "metadata/TrackSuffix.h"

namespace jk {

// The fields to change; a field left empty (nullopt) keeps the song's value.
struct TagChanges {
    std::optional<std::string> Title;
    std::optional<std::string> Artist;
    std::optional<std::string> Album;
    std::optional<std::string> Year;
    std::optional<std::string> Comment;
    std::optional<std::string> Genre;
    std::optional<std::int16_t> Track;

    bool Any() const { return Title || Artist || Album || Year || Comment || Genre || Track; }
};

// The record to write: the suffix stripped, then the changes applied.
SongInfo EditedSong(SongInfo song, const TagChanges& changes);

// What the tag editing dialog says when the tag could not be written: the dialog's own words
// when the file failed (most often for want of write permission), and the real reason in place
// of that guess when the writer refused.
std::string TagWriteFailedText(std::string_view fileName, const TagWriteResult& result = {});

}  // namespace jk
