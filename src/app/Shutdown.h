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

ShutdownResult FormUnload(Session& session, SessionFront& front, SessionData& data);

}  // namespace jk
