#pragma once

// Which catalogued discs are inserted now (the DiscIdentity extension): a mounted disc matches
// a volume by the UUID recorded for it, else by its label ignoring case; a volume with no
// record (an imported one) matches a disc labelled with its name. A disc mounted somewhere else
// than when it was scanned is found there: a song's path resolves through the current root.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/DiscRecords.h"
#include "catalogue/VirtualVolumes.h"

namespace jk {

// A mounted filesystem as the platform layer reports it.
struct MountedDisc {
    std::string MountRoot;
    std::string Label;
    std::string Uuid;
    std::string Type;

    friend bool operator==(const MountedDisc&, const MountedDisc&) = default;
};

using MountedDiscs = std::vector<MountedDisc>;

// The mounted disc that holds a path: the one with the longest mount root the path lies in.
const MountedDisc* DiscOfPath(const MountedDiscs& discs, std::string_view path);

// The record of a disc for a volume scanned from it now.
DiscRecord RecordOfDisc(std::string_view volume, const MountedDisc& disc, std::string scanDate);

// The mounted disc of a volume, or null.
const MountedDisc* FindVolumeDisc(std::string_view volume, const DiscRecords& records,
                                  const MountedDiscs& discs);

// The path of a catalogued song on its disc as mounted now: the part behind the root it was
// scanned under, behind the disc's current root.
std::string ResolveSongPath(std::string_view path, const DiscRecord* record,
                            const MountedDisc& disc);

// The label to ask for: the recorded label, else the volume's name.
std::string LabelToAskFor(std::string_view volume, const DiscRecords& records);

struct PresentVolume {
    std::string Name;
    std::string MountRoot;
};
// The volumes whose disc is mounted now, in the table's order.
std::vector<PresentVolume> PresentVolumes(const VolumeTable& table, const DiscRecords& records,
                                          const MountedDiscs& discs);
// The tree's tooltip of a present volume's root.
std::string InsertedTooltip(std::string_view mountRoot);

}  // namespace jk
