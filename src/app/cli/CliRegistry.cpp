#include "app/cli/CliRegistry.h"

#include <algorithm>

namespace jk {

CliRegistry& CliRegistry::Instance() {
    static CliRegistry registry;
    return registry;
}

void CliRegistry::Add(CliCommand command) {
    m_commands.push_back(std::move(command));
}

const CliCommand* CliRegistry::Find(std::string_view name) const {
    for (const CliCommand& command : m_commands) {
        if (command.name == name) {
            return &command;
        }
    }
    return nullptr;
}

std::vector<const CliCommand*> CliRegistry::Commands() const {
    std::vector<const CliCommand*> commands;
    commands.reserve(m_commands.size());
    for (const CliCommand& command : m_commands) {
        commands.push_back(&command);
    }
    std::sort(commands.begin(), commands.end(),
              [](const CliCommand* a, const CliCommand* b) { return a->name < b->name; });
    return commands;
}

CliRegistration::CliRegistration(CliCommand command) {
    CliRegistry::Instance().Add(std::move(command));
}

}  // namespace jk
