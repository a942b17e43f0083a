#pragma once

// A catalogue held as plain records, for the finders' tests: volumes of SongInfo in order.

#include <string>
#include <utility>
#include <vector>

#include "catalogue/SongFields.h"
#include "finders/CatalogueView.h"

namespace jk::test {

class MemoryCatalogue final : public CatalogueView {
public:
    struct Volume {
        std::string Name;
        std::vector<SongInfo> Songs;
    };

    std::vector<Volume> volumes;
    std::uint64_t generation = 1;

    Volume& Add(std::string name) {
        volumes.push_back(Volume{std::move(name), {}});
        ++generation;
        return volumes.back();
    }

    std::size_t VolumeCount() const override { return volumes.size(); }
    std::string_view VolumeName(std::size_t v) const override { return volumes[v].Name; }
    std::size_t SongCount(std::size_t v) const override { return volumes[v].Songs.size(); }
    SongFieldViews Fields(std::size_t v, std::size_t i) const override {
        const SongInfo& song = volumes[v].Songs[i];
        SongFieldViews fields;
        for (int key = kKeyTitle; key <= kKeyLastUsed; ++key) {
            fields[static_cast<std::size_t>(key - 1)] =
                song.*kSongKeyMembers[static_cast<std::size_t>(key - 1)];
        }
        fields[kKeyVolume - 1] = volumes[v].Name;
        return fields;
    }
    std::uint64_t Generation() const override { return generation; }
};

// A song with the fields a search looks at.
inline SongInfo Song(std::string title, std::string artist, std::string path,
                     std::string album = "", std::string year = "", std::string comment = "") {
    SongInfo song;
    song.Title = std::move(title);
    song.Artist = std::move(artist);
    song.Path = std::move(path);
    song.Album = std::move(album);
    song.Year = std::move(year);
    song.Comment = std::move(comment);
    song.Genre = "Rock";
    song.Bitrate = " 128";
    song.Size = "3000000";
    song.Time = "03:25";
    song.Date = "2/26/00 11:22:33 PM";
    return song;
}

}  // namespace jk::test
