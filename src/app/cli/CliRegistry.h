#pragma once

// The commands of jukarra-cli. Each command group lives in a file of its own and registers its
// commands here with a static CliRegistration, so that adding a command touches nothing else.

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace jk {

class CliContext;

// Exit status of the tool.
inline constexpr int kExitOk = 0;
inline constexpr int kExitUsage = 1;
inline constexpr int kExitFailed = 2;

// One line of --help: how a command is called and what it does.
struct CliHelpLine {
    std::string_view usage;
    std::string_view summary;
};

struct CliCommand {
    std::string_view name;
    std::vector<CliHelpLine> help;
    // Further text for "COMMAND --help" (formats, examples); may be empty.
    std::string_view details;
    // Runs the command with the arguments after its name; returns the exit status.
    int (*run)(CliContext& context, std::span<const std::string> args) = nullptr;
};

class CliRegistry {
public:
    static CliRegistry& Instance();

    void Add(CliCommand command);
    const CliCommand* Find(std::string_view name) const;
    // Every command, by name.
    std::vector<const CliCommand*> Commands() const;

private:
    std::vector<CliCommand> m_commands;
};

struct CliRegistration {
    explicit CliRegistration(CliCommand command);
};

}  // namespace jk
