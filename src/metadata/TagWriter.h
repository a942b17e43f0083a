#pragma once

// Writing a song's texts into its file's tags, and taking the tags off. The choice is between an
// ID3v1 tag alone and a Lyrics3 2.00 block with an ID3v1 tag behind it; a file that has a block
// keeps it. Only the tail of the file is written, in place: the audio ahead of the tags is never
// touched, whatever fails. Every routine returns false on failure and says nothing.

#include <optional>
#include <string>
#include <vector>

#include "metadata/Lyrics3.h"
#include "metadata/SongInfo.h"
#include "metadata/TagFile.h"
#include "util/Codepage.h"

namespace jk {

// The 128 bytes of an ID3v1.1 tag: fields padded with blanks (never NUL) or cut; a Track of 1 or
// more takes the comment's last two bytes (a zero and the track); the genre byte through the
// table (255 when unknown). Nothing when Track does not fit a byte.
std::optional<std::string> BuildID3Tag(const SongInfo& song, const SingleByteCodepage& page);

// On an open file (the rules themselves).
bool WriteSongTag(TagFile& file, const SongInfo& song, const SingleByteCodepage& page);
bool WriteID3Tag(TagFile& file, const SongInfo& song, const SingleByteCodepage& page);
bool WriteExpandedTag(TagFile& file, const std::vector<Lyrics3Field>& fields, const SongInfo& song,
                      const SingleByteCodepage& page);
bool StripTags(TagFile& file);

// On a path: false when the file does not exist. A file its owner may not write is given that
// permission first, and keeps it. `page` is the tag code page, windows-1252 when null.
bool WriteSongTag(const std::string& path, const SongInfo& song,
                  const SingleByteCodepage* page = nullptr);
bool WriteID3Tag(const std::string& path, const SongInfo& song,
                 const SingleByteCodepage* page = nullptr);
bool WriteExpandedTag(const std::string& path, const std::vector<Lyrics3Field>& fields,
                      const SongInfo& song, const SingleByteCodepage* page = nullptr);
bool StripTags(const std::string& path);

}  // namespace jk
