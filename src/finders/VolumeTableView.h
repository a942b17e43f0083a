#pragma once

// The catalogued discs of the session as the finders read them: each volume of the table in
// its order, each song as views into the volume's records. Nothing is copied.

#include <cstdint>

#include "catalogue/VirtualVolumes.h"
#include "finders/CatalogueView.h"

namespace jk {

class VolumeTableView final : public CatalogueView {
public:
    // `table` must outlive the view.
    explicit VolumeTableView(const VolumeTable& table) : m_table(table) {}

    std::size_t VolumeCount() const override { return m_table.size(); }
    std::string_view VolumeName(std::size_t volume) const override { return m_table[volume].Name; }
    std::size_t SongCount(std::size_t volume) const override { return m_table[volume].Count(); }
    SongFieldViews Fields(std::size_t volume, std::size_t song) const override {
        return m_table[volume].FieldsOf(song);
    }
    // The table's shape read afresh: the volumes, their names, their song counts and where
    // their first and last records are held. A volume added, removed, renamed, scanned again or
    // grown gives another number.
    std::uint64_t Generation() const override;

private:
    const VolumeTable& m_table;
};

}  // namespace jk
