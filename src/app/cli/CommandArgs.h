#pragma once

// A command's arguments: options and operands in any order, the usage error when they are
// wrong, and what the paths named on the command line stand for.

#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace jk {

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

// A file named on the command line as the full path a song record keeps: blanks at its ends
// go (as GetSongInfo takes them off), and a relative path is taken from the working folder.
std::string FullPathOf(std::string_view arg);

// True for a playlist file named on the command line (".m3u" or ".m3u8", in any case).
bool IsListFileName(std::string_view path);

}  // namespace jk
