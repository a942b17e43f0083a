#pragma once

// The ReadID3v2 extension: the texts of an ID3v2.2, 2.3 or 2.4 tag at the head of the file, and
// the rule by which they fill a record read from the tags at the end. Any fault in the tag
// leaves the record as it was; nothing here fails a read.

#include <cstdint>
#include <string>
#include <vector>

#include "metadata/ByteSource.h"
#include "metadata/SongInfo.h"

namespace jk {

struct ID3v2Texts {
    std::string Title;       // TIT2 / TT2
    std::string Artist;      // TPE1 / TP1
    std::string Album;       // TALB / TAL
    std::string Comment;     // the COMM / COM without a description, else the first whose
                             // description does not begin with "iTun"
    std::string Year;        // TYER / TYE, or the year of TDRC
    std::string Genre;       // TCON / TCO, references through the genre table
    std::int16_t Track = 0;  // TRCK / TRK up to its "/"
};

// Walks the frame headers of the tag (with bounds checks against the tag and the file) and has
// TagLib parse the bodies of the wanted frames from the bytes already read; plain text frames
// (no frame flags, texts in the Basic Multilingual Plane) are read without it, to the same
// result.
ID3v2Texts ReadID3v2Texts(ByteSource& source);
// The same with every wanted frame parsed by TagLib: the reference the reading above is held
// to in the tests.
ID3v2Texts ReadID3v2TextsThroughTagLib(ByteSource& source);

// Title, Artist, Album and Comment are taken when empty, or when exactly 30 characters long
// and the start of the ID3v2 text (an ID3v1 field filled to its width); Year when blank, Genre
// when "Unknown", Track when 0.
void MergeID3v2Texts(SongInfo& song, const ID3v2Texts& texts);

// The genre of a TCON frame's values: a number or "(NN)" through the table, "(RX)" and "(CR)",
// a refinement text behind the references, or the text itself. Empty when none gives a name.
std::string ResolveID3v2Genre(const std::vector<std::string>& values);

}  // namespace jk
