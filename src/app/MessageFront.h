#pragma once

// How a front end speaks to the user: a message, and the question of whether to save the open
// playlist. Every front end has this much: the desktop program shows boxes, the command-line
// tool writes one line on standard error and asks nothing.

#include "util/UserMessage.h"

namespace jk {

class MessageFront {
public:
    virtual ~MessageFront() = default;

    virtual void ShowMessage(const UserMessage& message) = 0;
    virtual SaveAnswer AskSaveList(const UserMessage& question) = 0;
};

}  // namespace jk
