#pragma once

// The songs of the running program for reading lists: GetSongInfo through the song cache, so a
// list of known songs opens without opening their files; a song read from disk joins the cache.
// A list's songs are looked at a little ahead of their turn on a few threads (their status, and
// the bytes of those the cache can't answer), while the cache itself is asked in list order.

#include "playback/SongRows.h"

namespace jk {

class SongLookup;

// The lookup must outlive the source, and its readings run on the lookup's thread.
SongSource CachedSongSource(SongLookup& lookup);

}  // namespace jk
