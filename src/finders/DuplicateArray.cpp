#include "finders/DuplicateArray.h"

#include <algorithm>
#include <array>
#include <utility>

#include "catalogue/SongFields.h"

namespace jk {
namespace {

// The catalogue key of each column, as LoadVirtualSource fills a row.
constexpr std::array<int, kColumnCount> kColumnKeys = {
    kKeyTitle,   kKeyArtist, kKeyAlbum,   kKeyYear, kKeyGenre, kKeyTime,
    kKeyBitrate, kKeyPath,   kKeyComment, kKeySize, kKeyDate,  kKeyVolume};

std::string_view FieldOf(const SongFieldViews& fields, Column column) {
    return fields[static_cast<std::size_t>(kColumnKeys[static_cast<std::size_t>(column)] - 1)];
}

}  // namespace

void DupeArray::AddRows(const RowList& rows, std::int16_t source, const DupeProgress& progress) {
    Part part;
    part.Begin = Size();
    part.Source = source;
    part.Rows.reserve(rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        part.Rows.push_back(rows[i]);
        part.Rows.back().SetSelected(false);
        if (progress && ((i + 1) % 4096 == 0 || i + 1 == rows.size())) {
            progress(i + 1, rows.size());
        }
    }
    m_reserved.resize(m_reserved.size() + rows.size(), source);
    m_parts.push_back(std::move(part));
}

void DupeArray::AddCatalogue(const CatalogueView& catalogue, const DupeProgress& progress) {
    Part part;
    part.Begin = Size();
    part.Source = kSourceVirtual;
    part.Catalogue = &catalogue;
    part.Starts.reserve(catalogue.VolumeCount() + 1);
    part.Starts.push_back(0);
    for (std::size_t v = 0; v < catalogue.VolumeCount(); ++v) {
        part.Starts.push_back(part.Starts.back() + catalogue.SongCount(v));
    }
    const std::size_t total = part.Starts.back();
    m_reserved.resize(m_reserved.size() + total, kSourceVirtual);
    m_parts.push_back(std::move(part));
    if (progress) {
        progress(total, total);
    }
}

const DupeArray::Part& DupeArray::PartOf(std::size_t record) const {
    auto it = std::upper_bound(m_parts.begin(), m_parts.end(), record,
                               [](std::size_t r, const Part& p) { return r < p.Begin; });
    return *(it - 1);
}

std::pair<std::size_t, std::size_t> DupeArray::SongOf(const Part& part, std::size_t song) {
    const auto v = static_cast<std::size_t>(
        std::upper_bound(part.Starts.begin(), part.Starts.end(), song) - part.Starts.begin() - 1);
    return std::pair{v, song - part.Starts[v]};
}

std::int16_t DupeArray::Source(std::size_t record) const {
    return PartOf(record).Source;
}

std::string_view DupeArray::Field(std::size_t record, Column column) const {
    const Part& part = PartOf(record);
    if (part.Catalogue == nullptr) {
        return part.Rows[record - part.Begin].Get(column);
    }
    const auto [volume, song] = SongOf(part, record - part.Begin);
    return FieldOf(part.Catalogue->Fields(volume, song), column);
}

std::vector<std::string_view> DupeArray::ColumnOf(Column column) const {
    std::vector<std::string_view> out;
    out.reserve(Size());
    for (const Part& part : m_parts) {
        if (part.Catalogue == nullptr) {
            for (const ListRow& row : part.Rows) {
                out.push_back(row.Get(column));
            }
            continue;
        }
        for (std::size_t v = 0; v + 1 < part.Starts.size(); ++v) {
            const std::size_t count = part.Starts[v + 1] - part.Starts[v];
            for (std::size_t song = 0; song < count; ++song) {
                out.push_back(FieldOf(part.Catalogue->Fields(v, song), column));
            }
        }
    }
    return out;
}

void DupeArray::VisitListed(
    const std::vector<bool>& listed, Column first, Column second,
    const std::function<void(std::string_view, std::string_view)>& visit) const {
    std::size_t record = 0;
    for (const Part& part : m_parts) {
        if (part.Catalogue == nullptr) {
            for (const ListRow& row : part.Rows) {
                if (record < listed.size() && listed[record]) {
                    visit(row.Get(first), row.Get(second));
                }
                ++record;
            }
            continue;
        }
        for (std::size_t v = 0; v + 1 < part.Starts.size(); ++v) {
            const std::size_t count = part.Starts[v + 1] - part.Starts[v];
            for (std::size_t song = 0; song < count; ++song, ++record) {
                if (record < listed.size() && listed[record]) {
                    const SongFieldViews fields = part.Catalogue->Fields(v, song);
                    visit(FieldOf(fields, first), FieldOf(fields, second));
                }
            }
        }
    }
}

ListRow DupeArray::Row(std::size_t record) const {
    const Part& part = PartOf(record);
    if (part.Catalogue == nullptr) {
        return part.Rows[record - part.Begin];
    }
    const auto [volume, song] = SongOf(part, record - part.Begin);
    const SongFieldViews fields = part.Catalogue->Fields(volume, song);
    std::array<std::string_view, kColumnCount> columns;
    for (std::size_t c = 0; c < kColumnCount; ++c) {
        columns[c] = FieldOf(fields, static_cast<Column>(c));
    }
    return ListRow(columns);
}

std::vector<DupeMember> DupeArray::Group(int criterion, std::int16_t showBit,
                                         std::size_t firstGroup) {
    if (criterion < 0 || criterion >= static_cast<int>(kDupeCriteria.size())) {
        return std::vector<DupeMember>{};
    }
    return GroupDuplicateMembers(ColumnOf(DupeKeyColumn(criterion)), m_reserved, criterion, showBit,
                                 firstGroup);
}

DupeListed DupeArray::Listed(const DupeMember& member) const {
    return DupeListed{DupeRow(Row(member.Record)), member.Group, Source(member.Record)};
}

}  // namespace jk
