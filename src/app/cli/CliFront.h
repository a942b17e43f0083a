#pragma once

// The command-line tool as a front end: it has no windows and asks no questions, so it has only
// messages, each one line on standard error. A first run's welcome and setup, which need
// windows, do not happen: a first run simply takes the defaults.

#include "app/MessageFront.h"

namespace jk {

class CliFront final : public MessageFront {
public:
    void ShowMessage(const UserMessage& message) override;
    // "No": there is nobody to ask.
    SaveAnswer AskSaveList(const UserMessage& question) override;
};

}  // namespace jk
