#pragma once

// Loading and saving song arrays in the VBASE container (form "VBASE 1.00"), and the song
// cache's own file, cache.dat in the data folder.

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "metadata/SongInfo.h"
#include "util/FileIo.h"

namespace jk {

class SongCache;

inline constexpr std::string_view kCacheFileName = "cache.dat";
// Where a damaged cache.dat is kept, so that the next save cannot make the loss worse.
inline constexpr std::string_view kDamagedCacheFileName = "cache.dat.damaged";
inline constexpr std::string_view kSavingCacheStatus = "Saving cache...";

// The virtual drive database reads its own files: a file whose name begins "master.da" in the
// VBASE form is handed to this reader, and its result is LoadVBase's.
using VolumesLoader = std::function<bool(const std::string& path)>;
// Told (done, total) every few hundred records while a file loads, and (total, total) at the end.
using LoadProgress = std::function<void(std::int64_t done, std::int64_t total)>;

// Reads a file into the array, replacing what it held. True on success, and for a missing file
// (an empty array). A file that does not begin "VBASE" is read in the older text form its name
// calls for. False when a field runs past the end of the file: the array then has the size the
// file announced (no more than the file could hold) and the records not read are blank. Records
// of a plain array start at element 0.
bool LoadVBase(const std::string& path, SongCache& cache, const VolumesLoader& volumes = {},
               const LoadProgress& progress = {});
bool LoadVBase(const std::string& path, std::vector<SongInfo>& songs,
               const VolumesLoader& volumes = {}, const LoadProgress& progress = {});

// The same from bytes in memory; `fileName` chooses the form, as the path's name does.
bool LoadVBaseFromBytes(std::string_view bytes, std::string_view fileName, SongCache& cache);
bool LoadVBaseFromBytes(std::string_view bytes, std::string_view fileName,
                        std::vector<SongInfo>& songs);

// Writes the records in form "VBASE 1.00". The Album of a record whose Track is above 0 gets
// " - NN" behind its right-trimmed text, in memory as well as in the file.
IoResult SaveVBase(const std::string& path, SongCache& cache);
IoResult SaveVBase(const std::string& path, std::span<SongInfo> songs);

// cache.dat in the data folder. A missing file is an empty cache; a damaged one is read as far
// as it goes, with nothing said, and a copy of it is kept aside once.
void LoadCache(SongCache& cache, const std::string& dataFolder, const LoadProgress& progress = {});
IoResult SaveCache(SongCache& cache, const std::string& dataFolder);

}  // namespace jk
