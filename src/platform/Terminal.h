#pragma once

// Facts about the terminal the program runs in.

namespace jk {

// True when standard error is a terminal (progress lines are drawn only then).
bool StderrIsTerminal();

}  // namespace jk
