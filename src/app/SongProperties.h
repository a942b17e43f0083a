#pragma once

// "Properties": a song's record as lines of a label and a text, and the ID3v1 fields the
// dialog lets the user edit, with the changes it hands to the tag writer.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "app/SongTagEdit.h"
#include "metadata/SongInfo.h"

namespace jk {

struct PropertyLine {
    std::string_view label;
    std::string text;
};

// The file name as FilenameMode shows it: 0 the full path, 1 the bare name.
std::string PropertiesFilename(std::string_view path, std::int16_t filenameMode);

// The record, one line a field, in the order a reader looks for them.
std::vector<PropertyLine> SongPropertyLines(const SongInfo& song, std::string_view path,
                                            std::int16_t filenameMode);

// The editable fields of the tag, as texts.
struct TagFields {
    std::string Title;
    std::string Artist;
    std::string Album;
    std::string Year;
    std::string Genre;
    std::string Comment;
    std::string Track;  // "" for no track

    friend bool operator==(const TagFields&, const TagFields&) = default;
};

// Widths of the ID3v1.1 fields in characters: longer texts are cut when written.
inline constexpr int kTagTextChars = 30;
inline constexpr int kTagYearChars = 4;
inline constexpr int kTagCommentChars = 28;

// The fields of a song as GetSongInfo gave it, the " - NN" of the track taken off its album.
TagFields EditableFields(SongInfo song);

// The changes from `before` to `after`; fields left as they were are not touched. `error`
// receives why the fields can't be written (a track that is no number from 0 to 255).
TagChanges ChangesBetween(const TagFields& before, const TagFields& after, std::string& error);

}  // namespace jk
