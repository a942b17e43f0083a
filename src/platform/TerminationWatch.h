#pragma once

// SIGTERM, SIGINT and SIGHUP (a logout, a `kill`, Ctrl-C in the terminal that started the
// program) turned into a call from the event loop, so that the program can close the way the
// user closes it, writing what the run changed, instead of dying on the spot. The handler only
// writes the signal's number into a socket pair; the event loop reads it and makes the call.

#include <functional>
#include <memory>

namespace jk {

class TerminationWatch {
public:
    // `onSignal` is called with the signal's number, in the event loop of the thread that made
    // the watch (a Qt application must exist). A signal that was ignored when the watch began
    // (a program started under nohup) stays ignored. One watch at a time.
    explicit TerminationWatch(std::function<void(int signal)> onSignal);
    // Gives the signals back their earlier handling.
    ~TerminationWatch();
    TerminationWatch(const TerminationWatch&) = delete;
    TerminationWatch& operator=(const TerminationWatch&) = delete;

    // False when the socket pair could not be made; the signals then keep their default.
    bool Active() const;

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

}  // namespace jk
