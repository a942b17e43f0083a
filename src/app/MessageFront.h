#pragma once

// How a front end speaks to the user: a message, the question of whether to save the open
// playlist, and a yes/no question (the catalogue's offers of its backups). Every front end has
// this much: the desktop program shows boxes, the command-line tool writes one line on standard
// error and asks nothing.

#include "util/UserMessage.h"

namespace jk {

class MessageFront {
public:
    virtual ~MessageFront() = default;

    virtual void ShowMessage(const UserMessage& message) = 0;
    virtual SaveAnswer AskSaveList(const UserMessage& question) = 0;
    // A front end that cannot ask answers No.
    virtual bool AskYesNo(const UserMessage& /*question*/) { return false; }
};

}  // namespace jk
