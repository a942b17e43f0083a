#include "catalogue/InsertDisc.h"

#include <unordered_map>

namespace jk {
namespace {

// Which volume holds each catalogued path; built only when some file is missing.
class PathIndex {
public:
    explicit PathIndex(const VolumeTable& table) : m_table(table) {}
    std::size_t VolumeOf(const std::string& path) {
        if (!m_built) {
            std::string scratch;
            for (std::size_t v = 0; v < m_table.size(); ++v) {
                for (std::size_t i = 0; i < m_table[v].Count(); ++i) {
                    m_index.emplace(m_table[v].PathOf(i), v);
                }
            }
            m_built = true;
        }
        const auto found = m_index.find(path);
        return found == m_index.end() ? kNoVolume : found->second;
    }

private:
    const VolumeTable& m_table;
    std::unordered_map<std::string, std::size_t> m_index;
    bool m_built = false;
};

}  // namespace

UserMessage InsertDiscQuestion(std::string_view name, std::string_view label, std::size_t songs) {
    std::string text = "Please insert the disc \"" + std::string(name) + "\" (label " +
                       std::string(label) + ") to play ";
    text += songs == 1 ? std::string("this song.") : "these " + std::to_string(songs) + " songs.";
    return {text, std::string(kInsertDiscTitle), MessageIcon::Question};
}

UserMessage PlayOthersQuestion(std::size_t songs, const std::vector<std::string>& names) {
    std::string text = std::to_string(songs) + " songs are on discs that are not inserted: ";
    for (std::size_t i = 0; i < names.size(); ++i) {
        text += (i == 0 ? "" : ", ") + names[i];
    }
    text += ".  Play the others?";
    return {text, std::string(kInsertDiscTitle), MessageIcon::Question};
}

PlayCheck CheckDiscsBeforePlay(const std::vector<std::string>& paths,
                               const VirtualCatalogue& catalogue, const PlayCheckSources& sources,
                               InsertDiscQuestions& questions) {
    PathIndex index(catalogue.Volumes);
    while (true) {
        const MountedDiscs discs = sources.mountedDiscs ? sources.mountedDiscs() : MountedDiscs{};
        PlayCheck check;
        // Absent volumes in the order first met, with their songs.
        std::vector<std::size_t> absentOrder;
        std::unordered_map<std::size_t, std::size_t> absentSongs;
        std::size_t absentTotal = 0;
        for (std::size_t p = 0; p < paths.size(); ++p) {
            const std::string& path = paths[p];
            std::string play = path;
            if (!sources.fileExists(path)) {
                const std::size_t v = index.VolumeOf(path);
                if (v != kNoVolume) {
                    const std::string& name = catalogue.Volumes[v].Name;
                    if (const MountedDisc* disc = FindVolumeDisc(name, catalogue.Discs, discs)) {
                        play = ResolveSongPath(path, FindDiscRecord(catalogue.Discs, name), *disc);
                    } else {
                        if (absentSongs[v]++ == 0) {
                            absentOrder.push_back(v);
                        }
                        ++absentTotal;
                        continue;
                    }
                }
            }
            check.paths.push_back(std::move(play));
            check.kept.push_back(p);
        }
        if (absentTotal == 0) {
            return check;
        }
        if (absentOrder.size() == 1 && check.paths.empty()) {
            const std::string& name = catalogue.Volumes[absentOrder[0]].Name;
            const UserMessage question =
                InsertDiscQuestion(name, LabelToAskFor(name, catalogue.Discs), absentTotal);
            if (questions.AskRetryCancel(question) == RetryAnswer::Retry) {
                continue;
            }
            return {false, {}, {}};
        }
        std::vector<std::string> names;
        names.reserve(absentOrder.size());
        for (const std::size_t v : absentOrder) {
            names.push_back(catalogue.Volumes[v].Name);
        }
        if (!questions.AskYesNo(PlayOthersQuestion(absentTotal, names)) || check.paths.empty()) {
            return {false, {}, {}};
        }
        return check;
    }
}

}  // namespace jk
