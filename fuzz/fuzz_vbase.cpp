// Feeds bytes to the VBASE reader under each of its file names (the name picks the reader),
// then runs what follows a load: optimising, trimming, and a save whose reload must give the
// same records back.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/CacheMaintenance.h"
#include "catalogue/SongCache.h"
#include "catalogue/VBaseFile.h"
#include "catalogue/VBaseFormat.h"

namespace {

std::string SavedBytes(const jk::SongCache& cache) {
    std::string out;
    jk::AppendVBaseHeader(out, jk::kVBaseVersion100, cache.UpperBound());
    for (std::int64_t i = 1; i <= cache.UpperBound(); ++i) {
        jk::AppendVBaseRecord(out, cache.Slot(i).Fields());
    }
    return out;
}

bool FitsAField(const jk::SongCache& cache) {
    for (std::int64_t i = 1; i <= cache.UpperBound(); ++i) {
        for (const std::string_view field : cache.Slot(i).Fields()) {
            if (!jk::FitsVBaseField(field)) {
                return false;
            }
        }
    }
    return true;
}

}  // namespace

// Called by libFuzzer, or by the replay of tests/tools/fuzz_replay.cpp.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    static constexpr std::string_view kNames[] = {"cache.dat", "master.dat", "image.jvd"};
    const std::string_view name = kNames[data[0] % 3];
    const std::string_view bytes(reinterpret_cast<const char*>(data + 1), size - 1);

    jk::SongCache cache;
    const bool ok = jk::LoadVBaseFromBytes(bytes, name, cache);
    std::vector<jk::SongInfo> songs;
    if (jk::LoadVBaseFromBytes(bytes, name, songs) != ok ||
        songs.size() != static_cast<std::size_t>(cache.UpperBound())) {
        __builtin_trap();
    }

    // A VBASE file read whole reads the same again once saved.
    if (ok && bytes.substr(0, 5) == jk::kVBaseMark && FitsAField(cache)) {
        jk::SongCache again;
        if (!jk::LoadVBaseFromBytes(SavedBytes(cache), "cache.dat", again) ||
            again.UpperBound() != cache.UpperBound()) {
            __builtin_trap();
        }
        for (std::int64_t i = 1; i <= cache.UpperBound(); ++i) {
            if (again.Record(i) != cache.Record(i)) {
                __builtin_trap();
            }
        }
    }

    jk::OptimizeCache(cache, data[0] % 7, "20240610120000");
    jk::TrimCache(cache, static_cast<std::int32_t>(data[0] % 5), 0);
    return 0;
}
