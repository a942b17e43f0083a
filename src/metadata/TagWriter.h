#pragma once

// Writing a song's texts into its file's tags, and taking the tags off. The choice is between an
// ID3v1 tag alone and a Lyrics3 2.00 block with an ID3v1 tag behind it; a file that has a block
// keeps it. Only the tail of the file is written, in place: the audio ahead of the tags is never
// touched, whatever fails. Every routine says nothing; its result is false on failure and tells
// why, so that each caller can say so in its own words.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "metadata/Lyrics3.h"
#include "metadata/SongInfo.h"
#include "metadata/TagFile.h"
#include "util/Codepage.h"

namespace jk {

enum class TagFault {
    None,
    FileMissing,          // the file does not exist
    FileAccess,           // it could not be opened, read, written or shortened
    FileTooShort,         // below 128 bytes: no room for a tag
    TrackTooLarge,        // a track that does not fit the tag's one byte
    FieldTooLong,         // a Lyrics3 field over 32,767 bytes, which no reader could read back
    BlockTooLong,         // a Lyrics3 block over 999,999 bytes, the most its six digits hold
    UnreadableBlock,      // the file's Lyrics3 block could not be read, so its fields can't be kept
    NoTags,               // nothing to strip
    EndMarkWithoutBlock,  // nothing to strip but a Lyrics3 end mark with no block ahead of it
};

struct TagWriteResult {
    TagFault fault = TagFault::None;
    std::string fieldId;     // FieldTooLong: the field's id ("ETT")
    std::int64_t bytes = 0;  // FieldTooLong, BlockTooLong: its size; TrackTooLarge: the track

    explicit operator bool() const { return fault == TagFault::None; }
};

// Why a tag was not written or stripped, as one sentence for the user ("" for success and for
// the two faults of the file itself, FileMissing and FileAccess, whose cause the writer can't
// tell).
std::string TagFaultText(const TagWriteResult& result);

// The 128 bytes of an ID3v1.1 tag: fields padded with blanks (never NUL) or cut; a Track of 1 or
// more takes the comment's last two bytes (a zero and the track); the genre byte through the
// table (255 when unknown). Nothing when Track does not fit a byte.
std::optional<std::string> BuildID3Tag(const SongInfo& song, const SingleByteCodepage& page);

// On an open file (the rules themselves).
TagWriteResult WriteSongTag(TagFile& file, const SongInfo& song, const SingleByteCodepage& page);
TagWriteResult WriteID3Tag(TagFile& file, const SongInfo& song, const SingleByteCodepage& page);
TagWriteResult WriteExpandedTag(TagFile& file, const std::vector<Lyrics3Field>& fields,
                                const SongInfo& song, const SingleByteCodepage& page);
TagWriteResult StripTags(TagFile& file);

// On a path: false when the file does not exist. A file its owner may not write is given that
// permission first, and keeps it. `page` is the tag code page, windows-1252 when null.
TagWriteResult WriteSongTag(const std::string& path, const SongInfo& song,
                            const SingleByteCodepage* page = nullptr);
TagWriteResult WriteID3Tag(const std::string& path, const SongInfo& song,
                           const SingleByteCodepage* page = nullptr);
TagWriteResult WriteExpandedTag(const std::string& path, const std::vector<Lyrics3Field>& fields,
                                const SongInfo& song, const SingleByteCodepage* page = nullptr);
TagWriteResult StripTags(const std::string& path);

}  // namespace jk
