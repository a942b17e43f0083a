#pragma once

// The shutdown sequence: the unsaved-playlist question (the last point where the user may still
// cancel), then the writes in the reverse order of start-up, the settings file last.

#include <string>

#include "app/SessionData.h"
#include "app/SessionFront.h"

namespace jk {

struct Session;

struct ShutdownResult {
    bool cancelled = false;  // the user chose Cancel: the program stays up, nothing was written
    bool iniWritten = false;
    std::string iniError;  // why the settings file could not be written
};

// Who asked for the close. A close asked by the system (a logout, a `kill`) has nobody to
// answer a question: nothing is asked and no dialog opens. A standing order to save without
// asking still saves a list that has a file; any other unsaved list is kept by lastlist.m3u
// when RememberList is on, as at every close.
enum class CloseRequest { ByUser, Unattended };

ShutdownResult FormUnload(Session& session, const SessionFront& front, SessionData& data,
                          CloseRequest request = CloseRequest::ByUser);

}  // namespace jk
