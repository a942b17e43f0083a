#include "catalogue/SongCache.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "util/PathHelpers.h"
#include "util/Utf8.h"

namespace jk {
namespace {

// Chunks are cut in two above this size; loads build them at half of it.
constexpr std::size_t kMaxChunk = 256;
constexpr std::size_t kLoadChunk = kMaxChunk / 2;

const PackedSong& BlankRecord() {
    static const PackedSong blank;
    return blank;
}

// (low + high) / 2 rounded to the nearest integer, a half going to the even neighbour, as the
// language's integer conversion rounds. Both bounds are 0 or more wherever it is used.
std::int64_t RoundedMid(std::int64_t low, std::int64_t high) {
    const std::int64_t sum = low + high;
    std::int64_t mid = sum / 2;
    if (sum % 2 != 0 && mid % 2 != 0) {
        ++mid;
    }
    return mid;
}

// Bytes [from, from + 8) of a key as a big-endian number, those beyond its end as 0.
std::uint64_t PrefixWord(std::string_view key, std::size_t from) {
    std::uint64_t word = 0;
    for (std::size_t i = 0; i < 8; ++i) {
        const std::size_t at = from + i;
        word = (word << 8) | (at < key.size() ? static_cast<unsigned char>(key[at]) : 0u);
    }
    return word;
}

}  // namespace

CacheKey::CacheKey(std::string_view key)
    : m_text(key), m_high(PrefixWord(key, 0)), m_low(PrefixWord(key, 8)) {}

void SongCache::Entry::SetPrefix() {
    const std::string_view key = record.Field(kKeyPath);
    high = PrefixWord(key, 0);
    low = PrefixWord(key, 8);
}

SongCache::Place SongCache::Locate(std::int64_t position) const {
    const auto after = std::upper_bound(m_starts.begin(), m_starts.end(), position);
    const auto chunk = static_cast<std::size_t>(after - m_starts.begin()) - 1;
    return {chunk, static_cast<std::size_t>(position - m_starts[chunk])};
}

const SongCache::Entry* SongCache::Find(std::int64_t index) const {
    if (index < 1 || index > m_count) {
        return nullptr;
    }
    const Place place = Locate(index - 1);
    return &m_chunks[place.chunk][place.offset];
}

SongCache::Entry* SongCache::Find(std::int64_t index) {
    return const_cast<Entry*>(std::as_const(*this).Find(index));
}

const PackedSong& SongCache::Slot(std::int64_t index) const {
    const Entry* entry = Find(index);
    return entry != nullptr ? entry->record : BlankRecord();
}

int SongCache::CompareKeyAt(std::int64_t index, const CacheKey& key) const {
    const Entry* entry = Find(index);
    const std::uint64_t high = entry != nullptr ? entry->high : 0;
    const std::uint64_t low = entry != nullptr ? entry->low : 0;
    // Unequal prefixes decide the order (a key shorter than 16 bytes is padded with 0, which
    // sorts below any byte); equal ones leave it to the whole texts.
    if (key.m_high != high) {
        return key.m_high < high ? -1 : 1;
    }
    if (key.m_low != low) {
        return key.m_low < low ? -1 : 1;
    }
    const int order =
        key.Text().compare(entry != nullptr ? entry->record.Field(kKeyPath) : std::string_view());
    return order < 0 ? -1 : (order > 0 ? 1 : 0);
}

SongInfo SongCache::Record(std::int64_t index) const {
    return Slot(index).ToSong();
}

std::string_view SongCache::KeyOf(std::int64_t index) const {
    return Slot(index).Field(kKeyPath);
}

std::string_view SongCache::DateOf(std::int64_t index) const {
    return Slot(index).Field(kKeyDate);
}

std::string_view SongCache::FieldOf(std::int64_t index, int key) const {
    return IsSongKey(key) ? Slot(index).Field(key) : std::string_view();
}

std::int16_t SongCache::TrackOf(std::int64_t index) const {
    return Slot(index).Track();
}

void SongCache::SetLastUsed(std::int64_t index, std::string_view stamp) {
    SetField(index, kKeyLastUsed, stamp);
}

void SongCache::SetField(std::int64_t index, int key, std::string_view text) {
    Entry* entry = Find(index);
    if (entry != nullptr && IsSongKey(key)) {
        entry->record.SetField(key, text);
        entry->SetPrefix();
    }
}

void SongCache::Clear() {
    m_chunks.clear();
    m_starts.clear();
    m_count = 0;
}

void SongCache::Insert(std::int64_t index, PackedSong record) {
    index = std::clamp<std::int64_t>(index, 1, m_count + 1);
    if (m_chunks.empty()) {
        m_chunks.emplace_back();
        m_starts.push_back(0);
    }
    const Place place = Locate(index - 1);
    std::vector<Entry>& chunk = m_chunks[place.chunk];
    Entry entry{0, 0, std::move(record)};
    entry.SetPrefix();
    chunk.insert(chunk.begin() + static_cast<std::ptrdiff_t>(place.offset), std::move(entry));
    for (std::size_t c = place.chunk + 1; c < m_starts.size(); ++c) {
        ++m_starts[c];
    }
    ++m_count;
    if (chunk.size() > kMaxChunk) {
        const std::size_t half = chunk.size() / 2;
        std::vector<Entry> upper;
        upper.reserve(kMaxChunk);
        std::move(chunk.begin() + static_cast<std::ptrdiff_t>(half), chunk.end(),
                  std::back_inserter(upper));
        chunk.erase(chunk.begin() + static_cast<std::ptrdiff_t>(half), chunk.end());
        const std::int64_t upperStart = m_starts[place.chunk] + static_cast<std::int64_t>(half);
        m_chunks.insert(m_chunks.begin() + static_cast<std::ptrdiff_t>(place.chunk) + 1,
                        std::move(upper));
        m_starts.insert(m_starts.begin() + static_cast<std::ptrdiff_t>(place.chunk) + 1,
                        upperStart);
    }
}

std::vector<PackedSong> SongCache::TakeAll() {
    std::vector<PackedSong> all;
    all.reserve(static_cast<std::size_t>(m_count));
    for (std::vector<Entry>& chunk : m_chunks) {
        for (Entry& entry : chunk) {
            all.push_back(std::move(entry.record));
        }
    }
    Clear();
    return all;
}

void SongCache::Assign(std::vector<PackedSong> records) {
    Clear();
    const std::size_t total = records.size();
    m_chunks.reserve(total / kLoadChunk + 1);
    m_starts.reserve(total / kLoadChunk + 1);
    for (std::size_t begin = 0; begin < total; begin += kLoadChunk) {
        const std::size_t end = std::min(total, begin + kLoadChunk);
        std::vector<Entry> chunk;
        chunk.reserve(end - begin);
        for (std::size_t i = begin; i < end; ++i) {
            Entry& entry = chunk.emplace_back(Entry{0, 0, std::move(records[i])});
            entry.SetPrefix();
        }
        m_starts.push_back(static_cast<std::int64_t>(begin));
        m_chunks.push_back(std::move(chunk));
    }
    m_count = static_cast<std::int64_t>(total);
}

std::int64_t CacheFind(const SongCache& cache, std::string_view key) {
    const CacheKey probe(key);
    std::int64_t low = 0;
    std::int64_t high = cache.UpperBound();
    while (low <= high) {
        const std::int64_t mid = RoundedMid(low, high);
        const int order = cache.CompareKeyAt(mid, probe);
        if (order < 0) {
            high = mid - 1;
        } else if (order > 0) {
            low = mid + 1;
        } else {
            return mid;
        }
    }
    return -1;
}

std::int64_t CacheInsertPoint(const SongCache& cache, std::string_view key) {
    const CacheKey probe(key);
    std::int64_t low = 0;
    std::int64_t high = cache.UpperBound() - 1;
    std::int64_t probed = 0;
    while (low <= high) {
        const std::int64_t mid = RoundedMid(low, high);
        probed = mid;
        const int order = cache.CompareKeyAt(mid, probe);
        if (order < 0) {
            high = mid - 1;
        } else if (order > 0) {
            low = mid + 1;
        } else {
            break;
        }
    }
    return probed;
}

std::string CacheKeyOf(std::string_view path) {
    return ToLower(BareName(path));
}

std::string StoredTime(std::string_view shown, bool exactTimes) {
    const std::size_t count = CharCount(shown);
    if (exactTimes && count > 5) {
        std::string_view minutes = CharLeft(shown, count - 2);
        if (minutes.back() == ':') {
            minutes.remove_suffix(1);
        }
        return std::string(minutes).append(CharRight(shown, 2));
    }
    return std::string(CharLeft(shown, 2)).append(CharRight(shown, 2));
}

std::string ShownTime(std::string_view stored, bool exactTimes) {
    const std::size_t count = CharCount(stored);
    const std::string_view minutes =
        exactTimes && count > 4 ? CharLeft(stored, count - 2) : CharLeft(stored, 2);
    return std::string(minutes).append(":").append(CharRight(stored, 2));
}

void CacheAdd(SongCache& cache, const SongInfo& song, std::string_view fileStamp,
              std::string_view now, bool exactTimes) {
    const std::string key = CacheKeyOf(song.Path);
    std::int64_t index = CacheInsertPoint(cache, key);
    if (cache.CompareKeyAt(index, CacheKey(key)) >= 0) {
        ++index;
    }
    SongFieldViews fields;
    for (int k = 1; k <= kSongFieldCount; ++k) {
        fields[static_cast<std::size_t>(k - 1)] = SongField(song, k);
    }
    const std::string time = StoredTime(song.Time, exactTimes);
    fields[kKeyDate - 1] = fileStamp;
    fields[kKeyLastUsed - 1] = now;
    if (song.Title.empty()) {
        fields[kKeyTitle - 1] = StripExtension(BareName(song.Path));
    }
    fields[kKeyTime - 1] = time;
    fields[kKeyPath - 1] = key;
    cache.Insert(index, PackedSong(fields, song.Track, song.Reserved));
}

}  // namespace jk
