#pragma once

// The songs of the running program for reading lists: GetSongInfo through the song cache, so a
// list of known songs opens without opening their files; a song read from disk joins the cache.

#include "playback/SongRows.h"

namespace jk {

struct SongLookupContext;

// The context must outlive the source.
SongSource CachedSongSource(SongLookupContext& ctx);

}  // namespace jk
