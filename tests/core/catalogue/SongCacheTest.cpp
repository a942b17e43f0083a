#include "catalogue/SongCache.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "CatalogueTestSupport.h"
#include "catalogue/SortSongs.h"
#include "util/Utf8.h"

namespace jk {
namespace {

using test::CacheOf;
using test::KeysOf;
using test::StoredSong;

SongCache CacheOfKeys(const std::vector<std::string>& keys) {
    std::vector<SongInfo> songs;
    for (const std::string& key : keys) {
        songs.push_back(StoredSong(key));
    }
    return CacheOf(songs);
}

SongInfo SongAt(std::string_view path, std::string_view title = "Title") {
    SongInfo song;
    song.Path = path;
    song.Title = title;
    song.Time = "03:45";
    return song;
}

TEST(CacheFind, FindsEveryKeyOfASortedCacheAndMissesOthers) {
    const SongCache cache = CacheOfKeys({"a.mp3", "b.mp3", "c.mp3", "d.mp3", "e.mp3"});
    for (std::int64_t i = 1; i <= 5; ++i) {
        EXPECT_EQ(CacheFind(cache, cache.KeyOf(i)), i);
    }
    EXPECT_EQ(CacheFind(cache, "0.mp3"), -1);
    EXPECT_EQ(CacheFind(cache, "bb.mp3"), -1);
    EXPECT_EQ(CacheFind(cache, "z.mp3"), -1);
    EXPECT_EQ(CacheFind(SongCache(), "a.mp3"), -1);
}

TEST(CacheFind, RoundsTheMiddleToEvenOnTies) {
    // The probes only reach "m" when 1.5 rounds to 2 and 2.5 rounds to 2; out-of-order keys
    // make any other rounding miss it.
    EXPECT_EQ(CacheFind(CacheOfKeys({"x", "m", "z"}), "m"), 2);
    EXPECT_EQ(CacheFind(CacheOfKeys({"a", "m", "b", "z", "z"}), "m"), 2);
}

TEST(CacheFind, ComparesBytesNotLetters) {
    // Upper case sorts before lower case, and UTF-8 above ASCII, byte by byte.
    const SongCache cache = CacheOfKeys({"B.mp3", "a.mp3", "z.mp3", "\xC3\xA9.mp3"});
    EXPECT_EQ(CacheFind(cache, "B.mp3"), 1);
    EXPECT_EQ(CacheFind(cache, "\xC3\xA9.mp3"), 4);
    EXPECT_EQ(CacheFind(cache, "b.mp3"), -1);
}

TEST(CacheInsertPoint, IsZeroForAnEmptyCacheAndNeverProbesTheLastRecord) {
    EXPECT_EQ(CacheInsertPoint(SongCache(), "a"), 0);
    const SongCache cache = CacheOfKeys({"a", "b", "c"});
    EXPECT_EQ(CacheInsertPoint(cache, "b"), 2);
    EXPECT_EQ(CacheInsertPoint(cache, "c"), 2);  // "c" itself is never reached
    EXPECT_EQ(CacheInsertPoint(cache, "d"), 2);
    EXPECT_EQ(CacheInsertPoint(cache, "0"), 0);
}

TEST(CacheAdd, KeepsTheCacheSortedInTheMiddle) {
    SongCache cache = CacheOfKeys({"a.mp3", "c.mp3", "e.mp3", "g.mp3"});
    CacheAdd(cache, SongAt("/m/D.mp3"), "20240101000000", "20240601000000");
    CacheAdd(cache, SongAt("/m/0.mp3"), "20240101000000", "20240601000000");
    EXPECT_EQ(KeysOf(cache),
              (std::vector<std::string>{"0.mp3", "a.mp3", "c.mp3", "d.mp3", "e.mp3", "g.mp3"}));
}

TEST(CacheAdd, AKeyAboveAllLandsOneShortOfTheEnd) {
    SongCache cache = CacheOfKeys({"a", "b", "c"});
    CacheAdd(cache, SongAt("/m/d"), "20240101000000", "20240601000000");
    EXPECT_EQ(KeysOf(cache), (std::vector<std::string>{"a", "b", "d", "c"}));

    SongCache one = CacheOfKeys({"m"});
    CacheAdd(one, SongAt("/m/z"), "20240101000000", "20240601000000");
    EXPECT_EQ(KeysOf(one), (std::vector<std::string>{"z", "m"}));

    // Sorting by key restores the true order.
    SortSongs(kKeyPath, cache);
    EXPECT_EQ(KeysOf(cache), (std::vector<std::string>{"a", "b", "c", "d"}));
}

TEST(CacheAdd, StoresTheRecordInItsCachedForm) {
    SongCache cache;
    SongInfo song = SongAt("/music/Folder/My Song.MP3", "");
    song.Time = "04:07";
    song.Album = "Blue";
    song.Track = 7;
    song.Reserved = 3;
    song.Date = "locale text that the cache does not keep";
    CacheAdd(cache, song, "20240102030405", "20240601123456");

    ASSERT_EQ(cache.UpperBound(), 1);
    const SongInfo stored = cache.Record(1);
    EXPECT_EQ(stored.Path, "my song.mp3");
    EXPECT_EQ(stored.Title, "My Song");
    EXPECT_EQ(stored.Time, "0407");
    EXPECT_EQ(stored.Date, "20240102030405");
    EXPECT_EQ(stored.LastUsed, "20240601123456");
    EXPECT_EQ(stored.Album, "Blue");
    EXPECT_EQ(stored.Track, 7);
    EXPECT_EQ(stored.Reserved, 3);
    EXPECT_EQ(cache.DateOf(1), "20240102030405");
    EXPECT_EQ(cache.KeyOf(1), "my song.mp3");
}

TEST(CacheAdd, KeysAreLowerCasedBeyondAscii) {
    SongCache cache;
    CacheAdd(cache, SongAt("/m/\xC3\x89T\xC3\x89.mp3"), "20240101000000", "20240601000000");
    EXPECT_EQ(cache.KeyOf(1), "\xC3\xA9t\xC3\xA9.mp3");
    EXPECT_EQ(CacheKeyOf("/a/B/\xC3\x96L.Mp3"), "\xC3\xB6l.mp3");
}

TEST(CacheKeyOf, IsTheLowerCasedBareNameWhateverTheBytes) {
    // The key is built without ToLower's copies, so it is held to ToLower's result here: ASCII,
    // two- to four-byte characters, bytes that are not UTF-8, cut and overlong sequences.
    std::vector<std::string> names = {"Plain.MP3",
                                      "\xC3\x89T\xC3\x89.mp3",
                                      "\xE2\x84\xAA.mp3" /* Kelvin sign */,
                                      "x\xF0\x90\x90\x80",
                                      "A\xFF\xFE",
                                      "\xC3",
                                      "A\xC3",
                                      "\xE2\x84",
                                      "\xC0\xAF",
                                      "\xED\xA0\x80",
                                      "\xEF\xBF\xBD\xC3\x96",
                                      ""};
    std::mt19937 random(11);
    const std::string alphabet = "aZ .\x80\xBF\xC3\x96\xE2\x84\xAA\xF0\x90\xFF";
    for (int i = 0; i < 2000; ++i) {
        std::string name;
        for (int n = static_cast<int>(random() % 12); n > 0; --n) {
            name.push_back(alphabet[random() % alphabet.size()]);
        }
        names.push_back(name);
    }
    std::string reused = "left over from an earlier key";
    for (const std::string& name : names) {
        EXPECT_EQ(CacheKeyOf("/music/Folder/" + name), ToLower(name));
        CacheKeyInto("/music/" + name, reused);
        EXPECT_EQ(reused, ToLower(name));
    }
}

TEST(StoredTime, KeepsTwoMinuteDigitsUnlessTimesAreExact) {
    struct Case {
        std::string_view shown;
        bool exact;
        std::string_view stored;
    };
    for (const Case& c : std::vector<Case>{{"03:45", true, "0345"},
                                           {"03:45", false, "0345"},
                                           {"100:05", true, "10005"},
                                           {"100:05", false, "1005"},
                                           {"1234:56", true, "123456"},
                                           {"", true, ""}}) {
        EXPECT_EQ(StoredTime(c.shown, c.exact), c.stored) << c.shown << " " << c.exact;
    }
    struct Back {
        std::string_view stored;
        bool exact;
        std::string_view shown;
    };
    for (const Back& c : std::vector<Back>{{"0345", true, "03:45"},
                                           {"0345", false, "03:45"},
                                           {"10005", true, "100:05"},
                                           {"10005", false, "10:05"}}) {
        EXPECT_EQ(ShownTime(c.stored, c.exact), c.shown) << c.stored << " " << c.exact;
    }
}

TEST(SongCache, IndexZeroAndOutOfRangeReadAsBlank) {
    SongCache cache = CacheOfKeys({"a"});
    EXPECT_EQ(cache.KeyOf(0), "");
    EXPECT_EQ(cache.KeyOf(2), "");
    EXPECT_EQ(cache.Record(0), SongInfo());
    cache.SetLastUsed(0, "x");  // ignored
    cache.SetLastUsed(1, "20990101000000");
    EXPECT_EQ(cache.Record(1).LastUsed, "20990101000000");
    cache.SetLastUsed(1, "short");
    EXPECT_EQ(cache.Record(1).LastUsed, "short");
    EXPECT_EQ(cache.KeyOf(1), "a");
    EXPECT_EQ(CacheFind(cache, "a"), 1);
    cache.SetField(1, kKeyPath, "a longer key than sixteen bytes");
    EXPECT_EQ(CacheFind(cache, "a"), -1);
    EXPECT_EQ(CacheFind(cache, "a longer key than sixteen bytes"), 1);
    EXPECT_EQ(CacheFind(cache, "a longer key than sixteen"), -1);
    cache.Clear();
    EXPECT_EQ(cache.UpperBound(), 0);
}

TEST(SongCache, ChangesMoveWithEveryEditButNotWithSearchesOrStamps) {
    // A record found before the count moved may have moved itself: each edit must move it.
    const auto moves = [](const std::function<void(SongCache&)>& edit) {
        SongCache cache = CacheOfKeys({"a.mp3", "b.mp3", "c.mp3"});
        const std::uint64_t before = cache.Changes();
        edit(cache);
        return cache.Changes() != before;
    };
    EXPECT_TRUE(moves([](SongCache& c) { CacheAdd(c, SongAt("/m/b2.mp3"), "20240101", "x"); }));
    EXPECT_TRUE(moves([](SongCache& c) { c.Insert(1, PackedSong(StoredSong("0.mp3"))); }));
    EXPECT_TRUE(moves([](SongCache& c) { c.SetField(2, kKeyPath, "z.mp3"); }));
    EXPECT_TRUE(moves([](SongCache& c) { c.SetLastUsed(2, "20990101000000"); }));
    EXPECT_TRUE(moves([](SongCache& c) { c.Clear(); }));
    EXPECT_TRUE(moves([](SongCache& c) { c.Assign(c.TakeAll()); }));
    EXPECT_TRUE(moves([](SongCache& c) { c.ForEach([](std::int64_t, PackedSong&) {}); }));
    EXPECT_TRUE(moves([](SongCache& c) { c = CacheOfKeys({"a.mp3", "b.mp3", "c.mp3"}); }));

    EXPECT_FALSE(moves([](SongCache& c) {
        PackedSong* slot = nullptr;
        c.FindForUpdate("b.mp3", slot);
        // A hit stamps its LastUsed through the slot: the record stays where it was found.
        slot->SetField(kKeyLastUsed, "20990101000000");
        CacheFind(c, "c.mp3");
        c.InsertIndex("d.mp3");
        std::as_const(c).ForEach([](std::int64_t, const PackedSong&) {});
    }));
}

// The two searches as the record array would run them on a flat list of keys (index 0 is the
// blank record), for the chunked cache to be held to.
std::int64_t ModelSearch(const std::vector<std::string>& keys, const std::string& key,
                         std::int64_t high, bool lastProbed) {
    const auto keyAt = [&](std::int64_t i) {
        return i >= 1 && i <= static_cast<std::int64_t>(keys.size())
                   ? keys[static_cast<std::size_t>(i - 1)]
                   : std::string();
    };
    std::int64_t low = 0;
    std::int64_t probed = 0;
    while (low <= high) {
        const std::int64_t sum = low + high;
        std::int64_t mid = sum / 2;
        if (sum % 2 != 0 && mid % 2 != 0) {
            ++mid;
        }
        probed = mid;
        const int order = key.compare(keyAt(mid));
        if (order < 0) {
            high = mid - 1;
        } else if (order > 0) {
            low = mid + 1;
        } else {
            return mid;
        }
    }
    return lastProbed ? probed : -1;
}

TEST(SongCache, SearchesProbeAsOnAFlatArray) {
    // Adds put a key above all others one short of the end, and same names share slots, so the
    // array is neither sorted nor free of repeats: the searches must probe exactly as the flat
    // array's would, whatever chunk a probe falls in.
    std::mt19937 random(5);
    SongCache cache;
    std::vector<std::string> model;
    const auto keyOf = [&random] {
        // Shared beginnings of 16 and 24 bytes, as "NN - Title" names have.
        std::string key = "01 - the long shared beginning";
        key.resize(random() % 3 == 0 ? 12 : (random() % 2 == 0 ? 20 : 28));
        return key + std::to_string(random() % 400);
    };
    for (int i = 0; i < 3000; ++i) {
        const std::string key = keyOf();
        SongInfo song = SongAt("/m/" + key);
        const std::int64_t at = cache.InsertIndex(key);
        std::int64_t modelAt =
            ModelSearch(model, key, static_cast<std::int64_t>(model.size()) - 1, true);
        const std::string there =
            modelAt >= 1 ? model[static_cast<std::size_t>(modelAt - 1)] : std::string();
        if (key.compare(there) >= 0) {
            ++modelAt;
        }
        ASSERT_EQ(at, modelAt) << key;
        CacheAdd(cache, song, "20240101000000", "20240601000000");
        model.insert(model.begin() + (modelAt - 1), key);
        const std::string probe = keyOf();
        PackedSong* slot = nullptr;
        const std::int64_t found = cache.FindForUpdate(probe, slot);
        ASSERT_EQ(found, ModelSearch(model, probe, static_cast<std::int64_t>(model.size()), false));
        ASSERT_EQ(CacheFind(cache, probe), found);
        if (found > 0) {
            ASSERT_EQ(slot, &cache.Slot(found));
        } else {
            ASSERT_EQ(slot, nullptr);
        }
    }
    EXPECT_EQ(KeysOf(cache), model);
}

TEST(SongCache, InsertsAtAnyPlaceAcrossManyChunks) {
    // The records live in chunks that split as they grow; a flat list is the model.
    std::mt19937 random(7);
    SongCache cache;
    std::vector<std::string> model;
    for (int i = 0; i < 6000; ++i) {
        const auto index = static_cast<std::int64_t>(random() % (model.size() + 1)) + 1;
        const std::string key = "k" + std::to_string(i);
        cache.Insert(index, PackedSong(StoredSong(key)));
        model.insert(model.begin() + (index - 1), key);
    }
    ASSERT_EQ(cache.UpperBound(), static_cast<std::int64_t>(model.size()));
    EXPECT_EQ(KeysOf(cache), model);
    std::int64_t seen = 0;
    cache.ForEach([&](std::int64_t index, PackedSong& record) {
        EXPECT_EQ(record.Field(kKeyPath), model[static_cast<std::size_t>(index - 1)]);
        ++seen;
    });
    EXPECT_EQ(seen, cache.UpperBound());
}

TEST(SongCache, ManyAddsThenASortGiveAFindableCache) {
    std::mt19937 random(11);
    SongCache cache;
    std::vector<std::string> names;
    for (int i = 0; i < 3000; ++i) {
        names.push_back("/m/Song " + std::to_string(random() % 100000) + ".mp3");
        CacheAdd(cache, SongAt(names.back()), "20240101000000", "20240601000000");
    }
    SortSongs(kKeyPath, cache);
    for (const std::string& name : names) {
        const std::int64_t index = CacheFind(cache, CacheKeyOf(name));
        ASSERT_GT(index, 0) << name;
        EXPECT_EQ(cache.KeyOf(index), CacheKeyOf(name));
    }
}

TEST(PackedSong, HoldsEveryFieldAndBothNumbers) {
    SongInfo song;
    for (int key = 1; key <= kSongFieldCount; ++key) {
        SongField(song, key) = "field " + std::to_string(key);
    }
    song.Comment = std::string(70000, 'c');
    song.Track = -2;
    song.Reserved = 32767;
    PackedSong packed(song);
    EXPECT_EQ(packed.ToSong(), song);
    packed.SetField(kKeyYear, "a longer year text");
    song.Year = "a longer year text";
    EXPECT_EQ(packed.ToSong(), song);

    PackedSong blank;
    EXPECT_EQ(blank.ToSong(), SongInfo());
    blank.SetField(kKeyTitle, "t");
    EXPECT_EQ(blank.Field(kKeyTitle), "t");
}

}  // namespace
}  // namespace jk
