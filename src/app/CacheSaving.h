#pragma once

// Saving what song lookups changed, outside the shutdown: the command-line tool saves after
// each command, as the shutdown would.

#include "util/FileIo.h"

namespace jk {

struct Session;

// Writes cache.dat from the session's cache. Writes nothing (and succeeds) while the cache is
// held back for a TagCodepage of this run only.
IoResult SaveSessionCache(Session& session);

// Writes the counters TotalCacheHits and CacheHits into the settings file, leaving every other
// key as the file holds it, so that this run's --set overrides stay this run's. A data folder
// whose settings file records no previous run gets the whole of this run's settings instead,
// which makes this run's TagCodepage the saved one; cache.dat is then written too when it has
// to agree with it.
IoResult SaveCacheCounters(Session& session);

// After a batch of lookups: the cache trimmed to CacheLimit (unless frozen) and saved, then the
// counters. The first failure is reported; the other write is still tried.
IoResult SaveLookupResults(Session& session);

}  // namespace jk
