#include "BenchCatalogue.h"

#include <fstream>

#include "catalogue/VolumeFile.h"

namespace jkbench {

jk::SongInfo CatalogueSong(const std::string& volume, std::string path, int i) {
    jk::SongInfo song;
    song.Title = "A song title number " + std::to_string(i);
    song.Artist = "Some Artist " + std::to_string(i % 397);
    song.Album = "An Album Name " + std::to_string(i % 1013);
    song.Year = "1999";
    song.Genre = "Rock";
    song.Time = "03:25";
    song.Bitrate = " 192";
    song.Size = std::to_string(3000000 + i);
    song.Date = "2/26/00 11:22:33 PM";
    song.LastUsed = "20240101120000";
    song.Path = std::move(path);
    song.Volume = volume;
    return song;
}

jk::VolumeTable CatalogueVolumes(int volumes, int perVolume, int folders, bool sorted) {
    jk::VolumeTable table;
    for (int v = 0; v < volumes; ++v) {
        const std::string name = "Disc" + std::to_string(v);
        table.emplace_back(name);
        for (int i = 0; i < perVolume; ++i) {
            table.back().Append(CatalogueSong(
                name,
                "/media/ann/" + name + "/Artist " + std::to_string(i % folders) + "/Album " +
                    std::to_string(i % 7) + "/" + std::to_string(i) + " - Track.mp3",
                i));
        }
        if (sorted) {
            table.back().SortByPath();
        }
    }
    return table;
}

bool WriteMasterFile(const std::string& path, const jk::VolumeTable& table) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    jk::WriteVolumes(table, [&out](std::string_view piece) {
        out.write(piece.data(), static_cast<std::streamsize>(piece.size()));
        return true;
    });
    out.close();
    return static_cast<bool>(out);
}

}  // namespace jkbench
