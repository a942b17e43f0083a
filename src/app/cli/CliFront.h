#pragma once

// The command-line tool's front end for start-up: no windows and no questions. Messages meant
// for the user go to standard error; the first run's welcome and setup are skipped, so a first
// run simply takes the defaults.

#include "app/SessionFront.h"

namespace jk {

class CliFront final : public SessionFront {
public:
    SaveAnswer AskSaveList(const UserMessage& question) override;
    void SaveListClick() override;
    void ShowMessage(const UserMessage& message) override;
};

}  // namespace jk
