#pragma once

// What the song and cache commands share: their argument parsing, the session made ready for
// song lookups, and their output.

#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/cli/ProgressLine.h"

namespace jk {

class CliContext;
struct Session;

struct CommandArgs {
    std::vector<std::string> operands;                        // the arguments that are no options
    std::vector<std::string> flags;                           // the flags given
    std::vector<std::pair<std::string, std::string>> values;  // options with a value, in order
    std::string error;                                        // a usage error, one line

    bool Has(std::string_view flag) const;
    // The value given last for an option; null when it was not given.
    const std::string* Value(std::string_view option) const;
};

// Splits a command's arguments into options and operands, anywhere in the line. `flags` take
// no value; `valued` take one, as "--title T" or "--title=T". "--" ends the options.
CommandArgs ParseCommandArgs(std::span<const std::string> args,
                             std::initializer_list<std::string_view> flags,
                             std::initializer_list<std::string_view> valued,
                             std::string_view command);

// "jukarra-cli: message (try --help)" on standard error; returns the exit status of bad usage.
int UsageError(std::string_view message);

// The started session with the cache emptied, and held back from saving, when a --set
// TagCodepage names another code page than the saved one.
Session& CacheSession(CliContext& context);
// The same, with this machine's volume labels for songs read from disk.
Session& SongSession(CliContext& context);

// A file named on the command line as the full path a song record keeps: blanks at its ends
// go (as GetSongInfo takes them off), and a relative path is taken from the working folder.
std::string FullPathOf(std::string_view arg);

// One line on standard output.
void PrintOut(std::string_view line);
// The exit status after the output is flushed: kExitFailed when standard output failed.
int FinishOutput(int status);

// "jukarra-cli: PATH: File non-existant" on standard error.
void ReportUnreadable(std::string_view path);

}  // namespace jk
