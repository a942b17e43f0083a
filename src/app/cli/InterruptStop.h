#pragma once

// Ctrl-C as a stop between the items of long work (a walk, a list), so that what was done so
// far is still printed and saved.

namespace jk {

// Exit status of a walk stopped by Ctrl-C: what the shell reports for a program that SIGINT
// ended, though here the rows so far were printed and the cache saved.
inline constexpr int kExitInterrupted = 130;

// While it lives, the first Ctrl-C only asks the work to stop (a second one ends the program
// as usual). A program started with SIGINT ignored keeps ignoring it.
class InterruptStop {
public:
    InterruptStop();
    ~InterruptStop();
    InterruptStop(const InterruptStop&) = delete;
    InterruptStop& operator=(const InterruptStop&) = delete;

    bool Requested() const;
};

}  // namespace jk
