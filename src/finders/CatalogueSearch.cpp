#include "finders/CatalogueSearch.h"

#include <string>

#include "catalogue/SongFields.h"
#include "finders/ResultRows.h"
#include "util/PathHelpers.h"
#include "util/Text.h"
#include "util/Utf8.h"

namespace jk {
namespace {

// The folder part of a path less its drive part, as the folder tree keys it: "/media/ann/D/rock/"
// gives "/rock", "d:\rock\" gives "\rock", "/home/ann/" gives "/home/ann".
std::string_view CutDrive(std::string_view folder) {
    while (!folder.empty() && IsCataloguedSeparator(folder.back())) {
        folder.remove_suffix(1);
    }
    const std::string_view drive = DrivePart(folder);
    std::string_view rest = drive == "/" ? folder : folder.substr(drive.size());
    while (!rest.empty() && IsCataloguedSeparator(rest.back())) {
        rest.remove_suffix(1);
    }
    return rest;
}

// The first component of a virtual path: the volume's label. Keys of volumes scanned on older
// systems carry "\" after it.
std::string_view Label(std::string_view lookIn) {
    return lookIn.substr(0, std::min(lookIn.find_first_of("/\\"), lookIn.size()));
}

int BarValue(std::size_t seen, std::size_t total) {
    return total == 0 ? 0 : static_cast<int>(seen * kSearchBarSteps / total);
}

// The loop both catalogue searches share: each record of the volumes asked, tested in order.
class VirtualRun {
public:
    VirtualRun(const CatalogueView& catalogue, const SearchRequest& request, RowList& rows,
               SearchFront& front)
        : m_catalogue(catalogue),
          m_request(request),
          m_rows(rows),
          m_front(front),
          m_generation(catalogue.Generation()),
          m_total(catalogue.TotalSongs()) {}

    // False when the search must end (a failure, or the catalogue changed under it).
    template <typename Wanted>
    bool Volume(std::size_t volume, const Wanted& wanted) {
        const std::size_t count = m_catalogue.SongCount(volume);
        for (std::size_t i = 0; i < count; ++i) {
            if (m_front.AbortRequested()) {
                m_result.End = SearchEnd::Aborted;
                break;
            }
            const SongFieldViews fields = m_catalogue.Fields(volume, i);
            ++m_seen;
            if (wanted(fields)) {
                const Verdict verdict = SearchVirtualRecord(fields, m_request);
                if (verdict == Verdict::Failed) {
                    m_result.End = SearchEnd::Failed;
                    return false;
                }
                if (verdict == Verdict::Match) {
                    m_rows.push_back(CatalogueHitRow(fields));
                }
            }
            if ((i + 1) % kVirtualYieldRecords == 0 && !Yield()) {
                return false;
            }
        }
        return Yield();
    }

    CatalogueSearchEnd Result() const { return m_result; }

private:
    bool Yield() {
        m_front.SetProgress(BarValue(m_seen, m_total), kSearchBarSteps);
        if (m_catalogue.Generation() != m_generation) {
            m_result.CatalogueChanged = true;
            return false;
        }
        return true;
    }

    const CatalogueView& m_catalogue;
    const SearchRequest& m_request;
    RowList& m_rows;
    SearchFront& m_front;
    std::uint64_t m_generation;
    std::size_t m_total;
    std::size_t m_seen = 0;
    CatalogueSearchEnd m_result;
};

}  // namespace

Verdict SearchVirtualRecord(const SongFieldViews& fields, const SearchRequest& request) {
    const bool found =
        TextTest([&fields](SearchField field) { return SearchFieldOf(fields, field); },
                 request.Fields, request.Query);
    const Verdict verdict = request.SizeDate.Match(fields[kKeySize - 1], fields[kKeyDate - 1]);
    if (verdict == Verdict::Failed) {
        return verdict;
    }
    return found && verdict == Verdict::Match ? Verdict::Match : Verdict::NoMatch;
}

CatalogueSearchEnd SearchAllVirtualDrives(const CatalogueView& catalogue,
                                          const SearchRequest& request, RowList& rows,
                                          SearchFront& front) {
    front.SetStatus(kScanningAllVirtual);
    VirtualRun run(catalogue, request, rows, front);
    const auto everyRecord = [](const SongFieldViews&) { return true; };
    for (std::size_t v = 0; v < catalogue.VolumeCount(); ++v) {
        if (!run.Volume(v, everyRecord)) {
            break;
        }
    }
    front.SetProgress(0, kSearchBarSteps);
    return run.Result();
}

std::size_t VolumeOfLookIn(const CatalogueView& catalogue, std::string_view lookIn) {
    const std::string_view label = Label(lookIn);
    for (std::size_t v = 0; v < catalogue.VolumeCount(); ++v) {
        if (EqualsNoCase(catalogue.VolumeName(v), label)) {
            return v;
        }
    }
    return catalogue.VolumeCount();
}

bool InVirtualFolder(std::string_view lookIn, std::string_view path) {
    const std::string_view label = Label(lookIn);
    std::size_t nameAt = path.find_last_of("/\\");
    nameAt = nameAt == std::string_view::npos ? 0 : nameAt + 1;
    const std::string_view folder = path.substr(0, nameAt);
    const std::string_view cut = CutDrive(folder);
    // label + cut + separator + file name, compared piece by piece without building it.
    std::string_view want = lookIn;
    const auto take = [&want](std::string_view piece) {
        const std::size_t n = std::min(piece.size(), want.size());
        if (piece.substr(0, n) != want.substr(0, n)) {
            return false;
        }
        want.remove_prefix(n);
        return true;
    };
    if (!take(label) || !take(cut)) {
        return false;
    }
    if (!folder.empty() && !take(folder.substr(folder.size() - 1))) {
        return false;
    }
    return take(path.substr(nameAt)) && want.empty();
}

CatalogueSearchEnd SearchVirtualFolder(const CatalogueView& catalogue, std::string_view lookIn,
                                       const SearchRequest& request, RowList& rows,
                                       SearchFront& front) {
    const std::size_t volume = VolumeOfLookIn(catalogue, lookIn);
    VirtualRun run(catalogue, request, rows, front);
    if (volume < catalogue.VolumeCount()) {
        run.Volume(volume, [lookIn](const SongFieldViews& fields) {
            return InVirtualFolder(lookIn, fields[kKeyPath - 1]);
        });
    }
    front.SetProgress(0, kSearchBarSteps);
    return run.Result();
}

}  // namespace jk
