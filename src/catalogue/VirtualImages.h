#pragma once

// Images of catalogued discs (*.jvd): form "VBASE 1.00", written by SaveVBase, so an Album
// carries " - NN" for a Track above 0; the volumes told apart by Volume alone. The reader is
// chosen by the file's name: only a name beginning "master.da" goes to the database's reader.

#include <string>
#include <string_view>
#include <vector>

#include "catalogue/VirtualCatalogue.h"

namespace jk {

inline constexpr std::string_view kImageFilter = "Virtual Drive images (*.jvd)";
inline constexpr std::string_view kAllFilesFilter = "All files (*.*)";

struct ExportResult {
    bool written = false;  // false with ok: nothing was selected, nothing written
    IoResult io;
    std::size_t songs = 0;
};

// Virtual_Export: the songs of the named volumes (each found by exact name), in the order
// named, into an image at `path`.
ExportResult ExportVolumes(const VolumeTable& table, const std::vector<std::string>& names,
                           const std::string& path);

struct ImportResult {
    bool ok = true;                  // the file was read whole
    std::vector<std::string> names;  // the volumes added, as named in the table
};

// VirtualImport_Click from ImportDrives on: the image's volumes join the table, each under a
// name not yet taken ("NAME (2)" and on). A file whose name begins "master.da" is read by the
// database's reader straight into the table, as the original did.
ImportResult ImportImage(VirtualCatalogue& catalogue, const std::string& path);

}  // namespace jk
