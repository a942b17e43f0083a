// jukarra-cli [--data-dir DIR] [--set KEY=VALUE]... COMMAND [ARGS]

#include <cstdio>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/SettingsTable.h"
#include "app/Startup.h"
#include "app/Version.h"
#include "app/cli/CliContext.h"
#include "app/cli/CliRegistry.h"
#include "app/cli/CommandArgs.h"
#include "app/cli/CommandOutput.h"
#include "platform/DataFolder.h"

namespace {

using jk::CliContext;
using jk::kExitFailed;
using jk::kExitOk;
using jk::PrintError;
using jk::UsageError;

struct GlobalOptions {
    std::string dataDir;
    std::vector<std::string> sets;
    bool help = false;
    bool version = false;
    std::size_t commandAt = 0;  // index of COMMAND in the arguments; size() when none
};

void PrintHelp() {
    std::printf(
        "Usage: jukarra-cli [--data-dir DIR] [--set KEY=VALUE]... COMMAND [ARGS]\n"
        "Works on the data folder and settings of the Jukarra desktop program.\n"
        "\n"
        "Options:\n"
        "  --data-dir DIR    the data folder (else $JUKARRA_HOME, the program's folder when it\n"
        "                    holds jukarra2.ini, or $XDG_DATA_HOME/jukarra); created when missing\n"
        "  --set KEY=VALUE   a setting for this run only; KEY is Section.Key or a key that one\n"
        "                    section holds, in any case\n"
        "  --help            this text; COMMAND --help tells more of one command\n"
        "  --version         the version\n"
        "\n"
        "Commands:\n");
    for (const jk::CliCommand* command : jk::CliRegistry::Instance().Commands()) {
        for (const jk::CliHelpLine& line : command->help) {
            std::printf("  %-34.*s %.*s\n", static_cast<int>(line.usage.size()), line.usage.data(),
                        static_cast<int>(line.summary.size()), line.summary.data());
        }
    }
    std::printf(
        "\n"
        "Exit status: 0 success, 1 bad usage, 2 the work failed. Errors are one line on standard\n"
        "error.\n");
}

void PrintCommandHelp(const jk::CliCommand& command) {
    for (const jk::CliHelpLine& line : command.help) {
        std::printf("Usage: jukarra-cli [OPTIONS] %.*s\n  %.*s\n",
                    static_cast<int>(line.usage.size()), line.usage.data(),
                    static_cast<int>(line.summary.size()), line.summary.data());
    }
    if (!command.details.empty()) {
        std::printf("\n%.*s\n", static_cast<int>(command.details.size()), command.details.data());
    }
}

// Parses the options ahead of COMMAND. Returns an empty text, or the usage error.
std::string ParseGlobalOptions(const std::vector<std::string>& args, GlobalOptions& options) {
    std::size_t i = 0;
    const auto valueOf = [&](std::string_view option, std::string& out) -> std::string {
        const std::string& arg = args[i];
        if (arg.size() > option.size() && arg[option.size()] == '=') {
            out = arg.substr(option.size() + 1);
            return {};
        }
        if (i + 1 >= args.size()) {
            return std::string(option) + " needs a value";
        }
        out = args[++i];
        return {};
    };
    for (; i < args.size(); ++i) {
        const std::string& arg = args[i];
        const auto is = [&](std::string_view option) {
            return arg == option ||
                   (arg.size() > option.size() && arg.compare(0, option.size(), option) == 0 &&
                    arg[option.size()] == '=');
        };
        std::string error;
        if (arg == "--help" || arg == "-h") {
            options.help = true;
        } else if (arg == "--version") {
            options.version = true;
        } else if (is("--data-dir")) {
            error = valueOf("--data-dir", options.dataDir);
            if (error.empty() && options.dataDir.empty()) {
                error = "--data-dir needs a folder";
            }
        } else if (is("--set")) {
            std::string set;
            error = valueOf("--set", set);
            options.sets.push_back(set);
        } else if (!arg.empty() && arg[0] == '-') {
            error = "unknown option " + arg;
        } else {
            break;
        }
        if (!error.empty()) {
            return error;
        }
    }
    options.commandAt = i;
    return {};
}

// Why KEY names no one setting: no section has it, or more than one has.
std::string SettingLookupError(const std::string& key, const jk::SettingLookup& lookup) {
    if (lookup.candidates.empty()) {
        return "unknown setting " + key;
    }
    std::string names;
    for (const jk::SettingField* field : lookup.candidates) {
        names += (names.empty() ? "" : ", ") + jk::SettingName(*field);
    }
    return "setting " + key + " is in more than one section (" + names + ")";
}

// Resolves each KEY=VALUE against the settings table.
std::string ParseOverrides(const std::vector<std::string>& sets,
                           std::vector<jk::SettingOverride>& overrides) {
    for (const std::string& set : sets) {
        const std::size_t equals = set.find('=');
        if (equals == std::string::npos || equals == 0) {
            return "--set takes KEY=VALUE, not \"" + set + "\"";
        }
        const std::string key = set.substr(0, equals);
        const jk::SettingLookup lookup = jk::FindSetting(key);
        if (lookup.field == nullptr) {
            return SettingLookupError(key, lookup);
        }
        overrides.push_back({lookup.field, set.substr(equals + 1)});
    }
    return {};
}

bool AsksForHelp(std::span<const std::string> args) {
    for (const std::string& arg : args) {
        if (arg == "--help" || arg == "-h") {
            return true;
        }
    }
    return false;
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> args(argv + 1, argv + argc);
    GlobalOptions options;
    if (const std::string error = ParseGlobalOptions(args, options); !error.empty()) {
        return UsageError(error);
    }
    if (options.help) {
        PrintHelp();
        return kExitOk;
    }
    if (options.version) {
        std::printf("%.*s\n", static_cast<int>(jk::kVersionText.size()), jk::kVersionText.data());
        return kExitOk;
    }
    if (options.commandAt >= args.size()) {
        return UsageError("no command given");
    }
    const std::string& name = args[options.commandAt];
    const jk::CliCommand* command = jk::CliRegistry::Instance().Find(name);
    if (command == nullptr) {
        return UsageError("unknown command " + name);
    }
    const std::span<const std::string> commandArgs(args.data() + options.commandAt + 1,
                                                   args.size() - options.commandAt - 1);
    if (AsksForHelp(commandArgs)) {
        PrintCommandHelp(*command);
        return kExitOk;
    }

    std::vector<jk::SettingOverride> overrides;
    if (const std::string error = ParseOverrides(options.sets, overrides); !error.empty()) {
        return UsageError(error);
    }
    const jk::DataFolderResult folder = jk::OpenDataFolder(options.dataDir);
    if (!folder.ok) {
        PrintError(folder.error);
        return kExitFailed;
    }
    CliContext context(folder.path, std::move(overrides));
    return command->run(context, commandArgs);
}
