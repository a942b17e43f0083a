#include "catalogue/VBaseFile.h"

#include <algorithm>
#include <utility>

#include "catalogue/OlderVBaseForms.h"
#include "catalogue/SongCache.h"
#include "catalogue/VBaseFormat.h"
#include "metadata/TrackSuffix.h"
#include "util/PathHelpers.h"
#include "util/Text.h"
#include "util/Utf8.h"

namespace jk {
namespace {

// An older text form is read whole; none was ever near this size.
constexpr std::size_t kMaxOlderFormBytes = std::size_t{512} << 20;
constexpr std::int64_t kMaxCopiedBytes = std::int64_t{1} << 30;
constexpr std::int64_t kProgressEverySongs = 512;

// Where the records of a load go: the song cache or a plain array.
class RecordSink {
public:
    virtual ~RecordSink() = default;
    // Empties the target and gives it `blanks` blank records.
    virtual void Reset(std::size_t blanks) = 0;
    virtual void Put(std::size_t index, const SongFieldViews& fields) = 0;
    virtual void Append(const SongFieldViews& fields) = 0;
    virtual void Finish() = 0;
};

class CacheSink final : public RecordSink {
public:
    explicit CacheSink(SongCache& cache) : m_cache(cache) { m_cache.Clear(); }
    void Reset(std::size_t blanks) override {
        m_records.clear();
        m_records.resize(blanks);
    }
    void Put(std::size_t index, const SongFieldViews& fields) override {
        m_records[index] = PackedSong(fields, 0, 0);
    }
    void Append(const SongFieldViews& fields) override { m_records.emplace_back(fields, 0, 0); }
    void Finish() override { m_cache.Assign(std::move(m_records)); }

private:
    SongCache& m_cache;
    std::vector<PackedSong> m_records;
};

class SongsSink final : public RecordSink {
public:
    explicit SongsSink(std::vector<SongInfo>& songs) : m_songs(songs) { m_songs.clear(); }
    void Reset(std::size_t blanks) override {
        m_songs.clear();
        m_songs.resize(blanks);
    }
    void Put(std::size_t index, const SongFieldViews& fields) override {
        Fill(m_songs[index], fields);
    }
    void Append(const SongFieldViews& fields) override { Fill(m_songs.emplace_back(), fields); }
    void Finish() override {}

private:
    static void Fill(SongInfo& song, const SongFieldViews& fields) {
        for (int key = 1; key <= kSongFieldCount; ++key) {
            SongField(song, key) = fields[static_cast<std::size_t>(key - 1)];
        }
    }
    std::vector<SongInfo>& m_songs;
};

bool ReadRecords(VBaseInput& input, RecordSink& sink, const LoadProgress& progress) {
    const VBaseHeader header = ReadVBaseHeader(input);
    if (header.recordCount == 0) {
        return true;
    }
    if (header.recordCount < 0 || header.fieldCount < 1) {
        return false;
    }
    // A count the file could not hold is not believed: no more blank records are made than
    // the bytes could carry.
    const std::int64_t size =
        std::min(header.recordCount, MaxVBaseRecords(input, header.fieldCount));
    sink.Reset(static_cast<std::size_t>(size));
    VBaseFieldDecoder decoder;
    SongFieldViews raw{};
    for (std::int64_t i = 0; i < size; ++i) {
        if (!ReadVBaseRecord(input, header.fieldCount, raw)) {
            return false;
        }
        sink.Put(static_cast<std::size_t>(i), decoder.Decode(raw));
        if (progress && (i + 1) % kProgressEverySongs == 0) {
            progress(i + 1, size);
        }
    }
    if (progress) {
        progress(size, size);
    }
    return size == header.recordCount;
}

// The name test of the readers: the bare name, lower-cased, cut to nine characters.
std::string NameKey(std::string_view fileName) {
    return std::string(CharLeft(ToLower(BareName(fileName)), 9));
}

bool LoadInput(VBaseInput& input, std::string_view fileName, const std::string* path,
               RecordSink& sink, const VolumesLoader& volumes, const LoadProgress& progress) {
    const std::string nameKey = NameKey(fileName);
    const bool isDatabase = nameKey == "master.da";
    if (!(input.Ensure(kVBaseMark.size()) && input.Peek(0, kVBaseMark.size()) == kVBaseMark)) {
        const std::string_view bytes = input.Rest(kMaxOlderFormBytes);
        ReadOlderVBaseForm(bytes, isDatabase || nameKey == "cache.dat",
                           [&](const SongFieldViews& fields) { sink.Append(fields); });
        sink.Finish();
        return true;
    }
    if (isDatabase && volumes && path != nullptr) {
        sink.Finish();
        return volumes(*path);
    }
    const bool ok = ReadRecords(input, sink, progress);
    sink.Finish();
    return ok;
}

bool LoadFile(const std::string& path, RecordSink& sink, const VolumesLoader& volumes,
              const LoadProgress& progress) {
    if (!FileExists(path)) {
        sink.Finish();
        return true;
    }
    ReadFile file(path);
    if (!file.IsOpen()) {
        sink.Finish();
        return false;
    }
    VBaseInput input(file);
    return LoadInput(input, path, &path, sink, volumes, progress);
}

std::string WithTrackSuffix(std::string_view album, std::int16_t track) {
    std::string out(album);
    AppendTrackSuffix(out, track);
    return out;
}

void KeepDamagedCopy(const std::string& path, const std::string& copyPath) {
    if (FileExists(copyPath)) {
        return;
    }
    std::string bytes;
    if (ReadWholeFile(path, bytes, kMaxCopiedBytes).ok) {
        WriteFileAtomically(copyPath, bytes);
    }
}

// The records go to the file in pieces of about this size, so that a cache of any size is never
// held a second time as one string.
constexpr std::size_t kWritePieceBytes = std::size_t{1} << 20;

template <class Records>
IoResult WriteVBaseFile(const std::string& path, std::int64_t count, const Records& forEachFields) {
    AtomicFileWriter file(path);
    std::string piece;
    piece.reserve(kWritePieceBytes + kVBaseHeaderBytes);
    AppendVBaseHeader(piece, kVBaseVersion100, count);
    forEachFields([&](const SongFieldViews& fields) {
        AppendVBaseRecord(piece, fields);
        if (piece.size() >= kWritePieceBytes) {
            file.Write(piece);
            piece.clear();
        }
    });
    file.Write(piece);
    return file.Commit();
}

SongFieldViews FieldsOf(const SongInfo& song) {
    SongFieldViews fields;
    for (int key = 1; key <= kSongFieldCount; ++key) {
        fields[static_cast<std::size_t>(key - 1)] = SongField(song, key);
    }
    return fields;
}

}  // namespace

bool LoadVBase(const std::string& path, SongCache& cache, const VolumesLoader& volumes,
               const LoadProgress& progress) {
    CacheSink sink(cache);
    return LoadFile(path, sink, volumes, progress);
}

bool LoadVBase(const std::string& path, std::vector<SongInfo>& songs, const VolumesLoader& volumes,
               const LoadProgress& progress) {
    SongsSink sink(songs);
    return LoadFile(path, sink, volumes, progress);
}

bool LoadVBaseFromBytes(std::string_view bytes, std::string_view fileName, SongCache& cache) {
    CacheSink sink(cache);
    VBaseInput input(bytes);
    return LoadInput(input, fileName, nullptr, sink, {}, {});
}

bool LoadVBaseFromBytes(std::string_view bytes, std::string_view fileName,
                        std::vector<SongInfo>& songs) {
    SongsSink sink(songs);
    VBaseInput input(bytes);
    return LoadInput(input, fileName, nullptr, sink, {}, {});
}

IoResult SaveVBase(const std::string& path, SongCache& cache) {
    cache.ForEach([](std::int64_t, PackedSong& record) {
        if (record.Track() > 0) {
            record.SetField(kKeyAlbum, WithTrackSuffix(record.Field(kKeyAlbum), record.Track()));
        }
    });
    const SongCache& records = cache;
    return WriteVBaseFile(path, cache.UpperBound(), [&](const auto& write) {
        records.ForEach([&](std::int64_t, const PackedSong& record) { write(record.Fields()); });
    });
}

IoResult SaveVBase(const std::string& path, std::span<SongInfo> songs) {
    for (SongInfo& song : songs) {
        if (song.Track > 0) {
            song.Album = WithTrackSuffix(song.Album, song.Track);
        }
    }
    return WriteVBaseFile(path, static_cast<std::int64_t>(songs.size()), [&](const auto& write) {
        for (const SongInfo& song : songs) {
            write(FieldsOf(song));
        }
    });
}

void LoadCache(SongCache& cache, const std::string& dataFolder, const LoadProgress& progress) {
    const std::string path = JoinPath(dataFolder, kCacheFileName);
    if (!LoadVBase(path, cache, {}, progress)) {
        KeepDamagedCopy(path, JoinPath(dataFolder, kDamagedCacheFileName));
    }
}

IoResult SaveCache(SongCache& cache, const std::string& dataFolder) {
    return SaveVBase(JoinPath(dataFolder, kCacheFileName), cache);
}

}  // namespace jk
