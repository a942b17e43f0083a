#pragma once

// Starting a program apart from this process (a player with its list): each argument passed as
// it is, no shell; the program outlives this process and is cut off from its terminal.

#include <string>
#include <vector>

#include "playback/PlayerPlatform.h"

namespace jk {

ProgramStart StartDetachedProgram(const std::string& program,
                                  const std::vector<std::string>& arguments);

// True when `program` names an executable file, or, without a "/", a command on the PATH.
bool ProgramIsThere(const std::string& program);

}  // namespace jk
