#include "finders/BestCopies.h"

#include <map>
#include <optional>

#include "finders/SearchDates.h"
#include "util/Text.h"
#include "util/TimeHelpers.h"

namespace jk {
namespace {

struct Merit {
    bool present = false;
    double bitrate = 0;
    std::int32_t seconds = 0;
    double size = 0;
    std::optional<CivilMoment> date;
};

Merit MeritOf(const DupeListed& row, bool present) {
    Merit merit;
    merit.present = present;
    merit.bitrate = Val(row.Row.Get(Column::Bitrate));
    merit.seconds = ParseTime(row.Row.Get(Column::Time), true);
    merit.size = Val(row.Row.Get(Column::Size));
    merit.date = ParseRecordDate(row.Row.Get(Column::Date));
    return merit;
}

bool Newer(const std::optional<CivilMoment>& a, const std::optional<CivilMoment>& b) {
    if (!a || !b) {
        return a.has_value() && !b.has_value();
    }
    const auto tuple = [](const CivilMoment& m) {
        return std::make_tuple(m.Year, m.Month, m.Day, m.Hour, m.Minute, m.Second);
    };
    return tuple(*a) > tuple(*b);
}

// True when `a` is the better copy; on a tie the earlier row stays the better.
bool Better(const Merit& a, const Merit& b) {
    if (a.present != b.present) {
        return a.present;
    }
    if (a.bitrate != b.bitrate) {
        return a.bitrate > b.bitrate;
    }
    if (a.seconds != b.seconds) {
        return a.seconds > b.seconds;
    }
    if (a.size != b.size) {
        return a.size > b.size;
    }
    return Newer(a.date, b.date);
}

}  // namespace

CopyProposal ProposeBestCopies(const std::vector<DupeListed>& rows, const CopyPresent& present) {
    CopyProposal proposal;
    proposal.Keep.assign(rows.size(), false);
    proposal.Select.assign(rows.size(), false);
    std::vector<bool> here(rows.size());
    std::vector<Merit> merits;
    merits.reserve(rows.size());
    for (std::size_t r = 0; r < rows.size(); ++r) {
        here[r] = present && present(rows[r]);
        merits.push_back(MeritOf(rows[r], here[r]));
    }
    std::map<std::size_t, std::size_t> kept;  // group -> the row it keeps
    for (std::size_t r = 0; r < rows.size(); ++r) {
        const auto [at, first] = kept.emplace(rows[r].Group, r);
        if (!first && Better(merits[r], merits[at->second])) {
            at->second = r;
        }
    }
    for (const auto& [group, keep] : kept) {
        proposal.Keep[keep] = true;
    }
    for (std::size_t r = 0; r < rows.size(); ++r) {
        const std::size_t keep = kept.at(rows[r].Group);
        // The very file kept (listed twice, from the playlist and the folder) is never offered.
        if (r != keep && here[r] &&
            rows[r].Row.Get(Column::Filename) != rows[keep].Row.Get(Column::Filename)) {
            proposal.Select[r] = true;
            ++proposal.Selected;
        }
    }
    return proposal;
}

UserMessage BestCopiesDeleteQuestion(const std::vector<std::string>& paths) {
    constexpr std::size_t kNamed = 5;
    std::string text = "Are you sure you want to delete " + std::to_string(paths.size()) +
                       (paths.size() == 1 ? " file?" : " files?") +
                       "  They go to the trash; the copies marked to keep stay.\n";
    for (std::size_t i = 0; i < paths.size() && i < kNamed; ++i) {
        text += "\n" + paths[i];
    }
    if (paths.size() > kNamed) {
        text += "\n... and " + std::to_string(paths.size() - kNamed) + " more";
    }
    return UserMessage{text, "Verify", MessageIcon::Question};
}

}  // namespace jk
