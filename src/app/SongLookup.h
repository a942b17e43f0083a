#pragma once

// How a session reads songs: the reading options its settings ask for, and a lookup context
// over its song cache and the two counters that the settings file keeps.

#include "catalogue/GetSongInfo.h"
#include "metadata/SongFileReader.h"

namespace jk {

struct Session;

// ReadID3v2 and ExactTimes (on when not 0), the TagCodepage (windows-1252 when empty or
// unknown) and the front end's volume labels.
SongReadOptions SongReadOptionsOf(const Session& session);

// A lookup for GetSongInfo over the session's cache and its counters TotalCacheHits and
// CacheHits (section Records). It refers to the session, which must outlive it; make one for a
// batch of songs, not one per song.
SongLookup MakeSongLookup(Session& session);

}  // namespace jk
