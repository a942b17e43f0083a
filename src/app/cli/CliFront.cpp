#include "app/cli/CliFront.h"

#include <string>

#include "app/cli/CommandOutput.h"

namespace jk {

SaveAnswer CliFront::AskSaveList(const UserMessage& /*question*/) {
    return SaveAnswer::No;
}

void CliFront::ShowMessage(const UserMessage& message) {
    std::string line = message.title.empty() ? message.text : message.title + " " + message.text;
    for (char& c : line) {
        if (c == '\n' || c == '\r') {
            c = ' ';
        }
    }
    PrintError(line);
}

}  // namespace jk
