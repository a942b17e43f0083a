#include "app/cli/CommandArgs.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "app/cli/CliRegistry.h"
#include "app/cli/CommandOutput.h"
#include "util/Text.h"

namespace jk {

bool CommandArgs::Has(std::string_view flag) const {
    return std::find(flags.begin(), flags.end(), flag) != flags.end();
}

const std::string* CommandArgs::Value(std::string_view option) const {
    const std::string* found = nullptr;
    for (const auto& [name, value] : values) {
        if (name == option) {
            found = &value;
        }
    }
    return found;
}

CommandArgs ParseCommandArgs(std::span<const std::string> args,
                             std::initializer_list<std::string_view> flags,
                             std::initializer_list<std::string_view> valued,
                             std::string_view command) {
    const auto listed = [](std::initializer_list<std::string_view> names, std::string_view name) {
        return std::find(names.begin(), names.end(), name) != names.end();
    };
    CommandArgs parsed;
    bool optionsEnded = false;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& arg = args[i];
        if (optionsEnded || arg.size() < 2 || arg[0] != '-') {
            parsed.operands.push_back(arg);
            continue;
        }
        if (arg == "--") {
            optionsEnded = true;
            continue;
        }
        const std::size_t equals = arg.find('=');
        const std::string name = arg.substr(0, equals);
        if (listed(flags, name) && equals == std::string::npos) {
            parsed.flags.push_back(name);
        } else if (listed(valued, name)) {
            if (equals != std::string::npos) {
                parsed.values.emplace_back(name, arg.substr(equals + 1));
            } else if (i + 1 < args.size()) {
                parsed.values.emplace_back(name, args[++i]);
            } else {
                parsed.error = std::string(command) + ": " + name + " needs a value";
                return parsed;
            }
        } else {
            parsed.error = std::string(command) + ": unexpected " + arg;
            return parsed;
        }
    }
    return parsed;
}

int UsageError(std::string_view message) {
    PrintError(std::string(message) + " (try --help)");
    return kExitUsage;
}

std::string FullPathOf(std::string_view arg) {
    const std::filesystem::path path(Trim(arg));
    if (path.is_absolute()) {
        return path.string();
    }
    std::error_code error;
    const std::filesystem::path here = std::filesystem::current_path(error);
    return error ? path.string() : (here / path).lexically_normal().string();
}

bool IsListFileName(std::string_view path) {
    const std::string lower = AsciiLower(path);
    return EndsWith(lower, ".m3u") || EndsWith(lower, ".m3u8");
}

}  // namespace jk
