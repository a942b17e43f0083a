#include "catalogue/SongCache.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <iterator>
#include <utility>

#include "util/PathHelpers.h"
#include "util/Utf8.h"

namespace jk {
namespace {

// What DecodeUtf8At gives for a byte that begins no character.
constexpr char32_t kReplacementChar = 0xFFFD;

// CharCount, CharLeft and CharRight of one text, by bytes when it is ASCII (times always are).
class Chars {
public:
    explicit Chars(std::string_view text)
        : m_text(text), m_ascii(std::all_of(text.begin(), text.end(), [](char c) {
              return static_cast<unsigned char>(c) < 0x80;
          })) {}
    std::size_t Count() const { return m_ascii ? m_text.size() : CharCount(m_text); }
    std::string_view Left(std::size_t chars) const {
        return m_ascii ? m_text.substr(0, chars) : CharLeft(m_text, chars);
    }
    std::string_view Right(std::size_t chars) const {
        if (!m_ascii) {
            return CharRight(m_text, chars);
        }
        return chars >= m_text.size() ? m_text : m_text.substr(m_text.size() - chars);
    }

private:
    std::string_view m_text;
    bool m_ascii;
};

// Chunks are cut in two above this size; loads build them at half of it.
constexpr std::size_t kMaxChunk = 128;
constexpr std::size_t kLoadChunk = kMaxChunk / 2;

const PackedSong& BlankRecord() {
    static const PackedSong blank;
    return blank;
}

// (low + high) / 2 rounded to the nearest integer, a half going to the even neighbour, as the
// language's integer conversion rounds; for bounds of 0 or more, in unsigned steps.
std::int64_t RoundedMid(std::int64_t low, std::int64_t high) {
    const auto sum = static_cast<std::uint64_t>(low + high);
    const std::uint64_t mid = (sum >> 1) + (sum & (sum >> 1) & 1);
    return static_cast<std::int64_t>(mid);
}

// Bytes [from, from + 8) of a key as a big-endian number, those beyond its end as 0.
std::uint64_t PrefixWord(std::string_view key, std::size_t from) {
    if (from + 8 <= key.size()) {
        std::uint64_t word = 0;
        std::memcpy(&word, key.data() + from, 8);
        return std::endian::native == std::endian::little ? __builtin_bswap64(word) : word;
    }
    std::uint64_t word = 0;
    for (std::size_t i = 0; i < 8; ++i) {
        const std::size_t at = from + i;
        word = (word << 8) | (at < key.size() ? static_cast<unsigned char>(key[at]) : 0u);
    }
    return word;
}

KeyPrefix PrefixOf(std::string_view key) {
    KeyPrefix prefix;
    for (std::size_t i = 0; i < kKeyPrefixWords; ++i) {
        prefix[i] = PrefixWord(key, 8 * i);
    }
    return prefix;
}

}  // namespace

CacheKey::CacheKey(std::string_view key) : m_text(key), m_prefix(PrefixOf(key)) {}

void SongCache::Entry::SetPrefix() {
    prefix = PrefixOf(record.Field(kKeyPath));
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

int SongCache::Compare(const Entry* entry, const CacheKey& key) {
    // Unequal prefixes decide the order (a key shorter than the prefix is padded with 0, which
    // sorts below any byte); equal ones leave it to the whole texts.
    static const KeyPrefix kBlank{};
    const KeyPrefix& prefix = entry != nullptr ? entry->prefix : kBlank;
    for (std::size_t i = 0; i < kKeyPrefixWords; ++i) {
        if (key.m_prefix[i] != prefix[i]) {
            return key.m_prefix[i] < prefix[i] ? -1 : 1;
        }
    }
    const int order =
        key.Text().compare(entry != nullptr ? entry->record.Field(kKeyPath) : std::string_view());
    return order < 0 ? -1 : (order > 0 ? 1 : 0);
}

int SongCache::CompareKeyAt(std::int64_t index, const CacheKey& key) const {
    return Compare(Find(index), key);
}

std::int64_t SongCache::Search(const CacheKey& key, std::int64_t low, std::int64_t high,
                               bool lastProbed) const {
    const Probed probed = SearchEntries(key, low, high);
    if (lastProbed) {
        return probed.index;
    }
    return probed.any && probed.order == 0 ? probed.index : -1;
}

std::int64_t SongCache::FindForUpdate(std::string_view key, PackedSong*& record) {
    const Probed probed = SearchEntries(CacheKey(key), 0, m_count);
    const bool found = probed.any && probed.order == 0;
    record = found && probed.entry != nullptr ? &const_cast<Entry*>(probed.entry)->record : nullptr;
    return found ? probed.index : -1;
}

std::int64_t SongCache::InsertIndex(std::string_view key) const {
    const CacheKey probe(key);
    const Probed probed = SearchEntries(probe, 0, m_count - 1);
    const int order = probed.any ? probed.order : Compare(Find(probed.index), probe);
    return order >= 0 ? probed.index + 1 : probed.index;
}

SongCache::Probed SongCache::SearchEntries(const CacheKey& key, std::int64_t low,
                                           std::int64_t high) const {
    // The chunk of a probe is sought only among the chunks the remaining range can reach (they
    // narrow with the range), and not at all while the probes stay in the last one found.
    std::size_t firstChunk = 0;
    std::size_t lastChunk = m_chunks.empty() ? 0 : m_chunks.size() - 1;
    std::size_t chunk = 0;
    std::int64_t chunkStart = 0;
    std::int64_t chunkEnd = 0;
    Probed probed;
    while (low <= high) {
        const std::int64_t mid = RoundedMid(low, high);
        probed.index = mid;
        probed.any = true;
        probed.entry = nullptr;
        bool located = false;
        if (mid >= 1 && mid <= m_count) {
            const std::int64_t position = mid - 1;
            if (position < chunkStart || position >= chunkEnd) {
                const auto begin = m_starts.begin() + static_cast<std::ptrdiff_t>(firstChunk);
                const auto end = m_starts.begin() + static_cast<std::ptrdiff_t>(lastChunk) + 1;
                chunk = static_cast<std::size_t>(std::upper_bound(begin, end, position) -
                                                 m_starts.begin()) -
                        1;
                chunkStart = m_starts[chunk];
                chunkEnd = chunkStart + static_cast<std::int64_t>(m_chunks[chunk].size());
            }
            located = true;
            const std::vector<Entry>& entries = m_chunks[chunk];
            probed.entry = &entries[static_cast<std::size_t>(position - chunkStart)];
            // Whichever way this probe goes, the next one is one of two records: ask the
            // memory for both while this one is compared (a listing's searches wait on it).
            // A range that closes (mid - 1 below low) gives an index outside the chunk.
            for (const std::int64_t next :
                 {RoundedMid(low, mid - 1) - 1, RoundedMid(mid + 1, high) - 1}) {
                if (next >= chunkStart && next < chunkEnd) {
                    __builtin_prefetch(&entries[static_cast<std::size_t>(next - chunkStart)]);
                }
            }
        }
        probed.order = Compare(probed.entry, key);
        if (probed.order < 0) {
            high = mid - 1;
            if (located) {
                lastChunk = chunk;
            }
        } else if (probed.order > 0) {
            low = mid + 1;
            if (located) {
                firstChunk = chunk;
            }
        } else {
            break;
        }
    }
    return probed;
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
        ++m_changes;
        entry->record.SetField(key, text);
        entry->SetPrefix();
    }
}

SongCache& SongCache::operator=(SongCache&& other) noexcept {
    if (this != &other) {
        m_chunks = std::move(other.m_chunks);
        m_starts = std::move(other.m_starts);
        m_count = std::exchange(other.m_count, 0);
        // Records found in either cache before are gone from this one.
        m_changes = std::max(m_changes, other.m_changes) + 1;
        other.Clear();
    }
    return *this;
}

void SongCache::Clear() {
    ++m_changes;
    m_chunks.clear();
    m_starts.clear();
    m_count = 0;
}

void SongCache::Insert(std::int64_t index, PackedSong record) {
    index = std::clamp<std::int64_t>(index, 1, m_count + 1);
    ++m_changes;
    if (m_chunks.empty()) {
        m_chunks.emplace_back();
        m_starts.push_back(0);
    }
    const Place place = Locate(index - 1);
    std::vector<Entry>& chunk = m_chunks[place.chunk];
    Entry entry{{}, std::move(record)};
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
            Entry& entry = chunk.emplace_back(Entry{{}, std::move(records[i])});
            entry.SetPrefix();
        }
        m_starts.push_back(static_cast<std::int64_t>(begin));
        m_chunks.push_back(std::move(chunk));
    }
    m_count = static_cast<std::int64_t>(total);
}

std::int64_t CacheFind(const SongCache& cache, std::string_view key) {
    return cache.Search(CacheKey(key), 0, cache.UpperBound(), false);
}

std::int64_t CacheInsertPoint(const SongCache& cache, std::string_view key) {
    return cache.Search(CacheKey(key), 0, cache.UpperBound() - 1, true);
}

std::string CacheKeyOf(std::string_view path) {
    std::string key;
    CacheKeyInto(path, key);
    return key;
}

void CacheKeyInto(std::string_view path, std::string& key) {
    // ToLower's mapping, character by character, written into memory the key keeps between
    // files: ASCII needs no case table, other characters take Unicode's simple lower case and
    // bytes that are not UTF-8 stay as they are.
    const std::string_view name = BareName(path);
    // A lower-case character is at most one byte longer than its capital (two bytes become
    // three), and a capital of two bytes is the shortest that grows.
    key.resize(name.size() + name.size() / 2);
    char* out = key.data();
    std::size_t pos = 0;
    while (pos < name.size()) {
        const auto b = static_cast<unsigned char>(name[pos]);
        if (b < 0x80) {
            *out++ = static_cast<char>(b >= 'A' && b <= 'Z' ? b + ('a' - 'A') : b);
            ++pos;
            continue;
        }
        const std::size_t before = pos;
        const char32_t cp = DecodeUtf8At(name, pos);
        if (pos == before + 1 && cp == kReplacementChar) {
            *out++ = static_cast<char>(b);
        } else {
            out = WriteUtf8(out, LowerChar(cp));
        }
    }
    key.resize(static_cast<std::size_t>(out - key.data()));
}

std::string StoredTime(std::string_view shown, bool exactTimes) {
    const Chars text(shown);
    const std::size_t count = text.Count();
    if (exactTimes && count > 5) {
        std::string_view minutes = text.Left(count - 2);
        if (minutes.back() == ':') {
            minutes.remove_suffix(1);
        }
        return std::string(minutes).append(text.Right(2));
    }
    return std::string(text.Left(2)).append(text.Right(2));
}

std::string ShownTime(std::string_view stored, bool exactTimes) {
    const Chars text(stored);
    const std::size_t count = text.Count();
    const std::string_view minutes = exactTimes && count > 4 ? text.Left(count - 2) : text.Left(2);
    return std::string(minutes).append(":").append(text.Right(2));
}

void CacheAdd(SongCache& cache, const SongInfo& song, std::string_view fileStamp,
              std::string_view now, bool exactTimes) {
    CacheAddUnderKey(cache, song, CacheKeyOf(song.Path), fileStamp, now, exactTimes);
}

void CacheAddUnderKey(SongCache& cache, const SongInfo& song, std::string_view key,
                      std::string_view fileStamp, std::string_view now, bool exactTimes) {
    const std::int64_t index = cache.InsertIndex(key);
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
