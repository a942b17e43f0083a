#pragma once

// Which disc each catalogued volume came from (the DiscIdentity extension), kept in discs.dat
// beside master.dat: a first line "JUKARRA DISCS 1", then one volume a line, its fields
// separated by tabs (a tab, line break or backslash inside a field written as \t, \n, \r, \\).
// A missing or damaged file means that nothing is known of identities.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace jk {

inline constexpr std::string_view kDiscsFileName = "discs.dat";

struct DiscRecord {
    std::string Volume;     // the volume's name
    std::string Label;      // the filesystem's label, "" when it has none
    std::string Uuid;       // the filesystem's UUID, "" when it has none
    std::string Type;       // the filesystem type ("iso9660", "vfat")
    std::string MountRoot;  // where it was mounted when scanned
    std::string ScanDate;   // "yyyymmddhhnnss"

    friend bool operator==(const DiscRecord&, const DiscRecord&) = default;
};

using DiscRecords = std::vector<DiscRecord>;

std::string DiscsBytes(const DiscRecords& records);
// Nothing for a damaged file.
std::optional<DiscRecords> ParseDiscs(std::string_view bytes);
// discs.dat of a folder: empty when missing or damaged.
DiscRecords LoadDiscs(const std::string& path);

const DiscRecord* FindDiscRecord(const DiscRecords& records, std::string_view volume);
// Replaces the record of the same volume, or adds it.
void SetDiscRecord(DiscRecords& records, DiscRecord record);
void RenameDiscRecord(DiscRecords& records, std::string_view oldName, std::string_view newName);
void RemoveDiscRecord(DiscRecords& records, std::string_view volume);

}  // namespace jk
