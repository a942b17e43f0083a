#include "app/cli/CliFront.h"

#include <cstdio>
#include <string>

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
    std::fprintf(stderr, "jukarra-cli: %s\n", line.c_str());
}

}  // namespace jk
