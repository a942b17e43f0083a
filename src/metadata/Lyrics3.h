#pragma once

// The Lyrics3 2.00 block that stands ahead of an ID3v1 tag: "LYRICSBEGIN", fields of a
// three-letter id, five size digits and data, then six digits of the block's size and
// "LYRICS200". Only ETT, EAR and EAL are read; every other field is carried through as it is.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "metadata/ByteSource.h"
#include "metadata/SongInfo.h"
#include "metadata/SongReadContext.h"

namespace jk {

struct Lyrics3Field {
    std::string ID;
    std::int16_t Size = 0;
    std::string Data;  // the bytes as the file holds them, in the tag code page

    friend bool operator==(const Lyrics3Field&, const Lyrics3Field&) = default;
};

// The end mark, its size digits and the ID3v1 tag behind it.
inline constexpr std::int64_t kLyrics3Trailer = 6 + 9;

// "LYRICS200" at the place it has when an ID3v1 tag follows (9 bytes at length - 137). A file of
// fewer than 137 bytes has none.
bool HasLyrics3Tag(ByteSource& source);

// The block's bytes, from the size digits at length - 143: N bytes ending there. Fails when the
// digits give a negative or over-long size, or the block would begin before the file.
Outcome<std::string_view> ReadLyrics3BlockBytes(ByteSource& source);

// The fields of a block text. A size that leaves 16 bits or is negative fails; a size larger
// than what remains takes what is there and ends the walk.
Outcome<std::vector<Lyrics3Field>> ParseLyrics3Block(std::string_view block);

// The fields of a file known to have a block.
Outcome<std::vector<Lyrics3Field>> ReadLyrics3Fields(ByteSource& source);

// The ID3v1 reading with the extended texts where they are at least as long. A block that
// doesn't begin with "LYRICSBEGIN" was a chance hit: the file is read as ID3v1 or untagged.
Outcome<SongInfo> ReadLyrics3Song(ByteSource& source, const SongReadContext& context);
// The same into `song`, a blank record.
Outcome<Done> ReadLyrics3SongInto(ByteSource& source, const SongReadContext& context,
                                  SongInfo& song);

// The block text with its size digits and end mark. "IND" comes first with the size it had;
// fields with empty data are left out; the rest carry their trimmed data.
std::string BuildLyrics3Block(const std::vector<Lyrics3Field>& fields);

// The size N of a block the writer may replace: end mark, ID3v1 tag, digits that read as a
// number and "LYRICSBEGIN" where they say. Anything else is not treated as a block, so that
// writing a tag never cuts into audio that happens to hold the end mark.
std::optional<std::int64_t> GenuineLyrics3BlockSize(ByteSource& source);

}  // namespace jk
