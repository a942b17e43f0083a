#pragma once

// The check that stands before songs reach the player: a song whose file is missing and that
// lies on a catalogued volume whose disc is not inserted brings a question, never a silent
// failure. Songs on a disc mounted at another root than when it was scanned play from there.

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "catalogue/DiscPresence.h"
#include "catalogue/VirtualCatalogue.h"
#include "util/UserMessage.h"

namespace jk {

inline constexpr std::string_view kInsertDiscTitle = "Insert disc";

enum class RetryAnswer { Retry, Cancel };

class InsertDiscQuestions {
public:
    virtual ~InsertDiscQuestions() = default;
    virtual RetryAnswer AskRetryCancel(const UserMessage& question) = 0;
    virtual bool AskYesNo(const UserMessage& question) = 0;
};

// "Please insert the disc "NAME" (label LABEL) to play this song." (or "these N songs.").
UserMessage InsertDiscQuestion(std::string_view name, std::string_view label, std::size_t songs);
// "N songs are on discs that are not inserted: NAME, NAME.  Play the others?"
UserMessage PlayOthersQuestion(std::size_t songs, const std::vector<std::string>& names);

struct PlayCheck {
    bool play = true;
    // The paths to hand to the player, each resolved through its disc's current root; songs
    // the user chose to leave out are not among them.
    std::vector<std::string> paths;
    // For each path kept, its index in the paths asked about.
    std::vector<std::size_t> kept;
};

struct PlayCheckSources {
    std::function<MountedDiscs()> mountedDiscs;
    std::function<bool(const std::string&)> fileExists;
};

PlayCheck CheckDiscsBeforePlay(const std::vector<std::string>& paths,
                               const VirtualCatalogue& catalogue, const PlayCheckSources& sources,
                               InsertDiscQuestions& questions);

}  // namespace jk
