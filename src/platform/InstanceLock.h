#pragma once

// One desktop program per data folder: a lock file in the data folder, held for the whole run,
// and a local socket on which the running program hears a later start ask it to raise its
// window. The command-line tool takes the same lock only while it changes data files, so it
// never writes under a running desktop program.

#include <functional>
#include <memory>
#include <string>

namespace jk {

class InstanceLock {
public:
    enum class Result { Acquired, HeldElsewhere, Failed };

    // `dataFolder` ends in "/".
    explicit InstanceLock(std::string dataFolder);
    ~InstanceLock();
    InstanceLock(const InstanceLock&) = delete;
    InstanceLock& operator=(const InstanceLock&) = delete;

    // Takes the lock, waiting up to `waitMs` for another holder to let go.
    Result TryAcquire(int waitMs = 0);
    bool Held() const;
    // Why the lock could not be taken, for Failed.
    const std::string& Error() const;

    // Answers raise requests of later starts by calling `onRaise` in the event loop of the
    // calling thread. Needs the lock; false when the channel could not be opened.
    bool ListenForRaise(std::function<void()> onRaise);

    void Release();

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

// Asks the desktop program that holds the lock of `dataFolder` to raise its window. True when
// it answered within `timeoutMs`.
bool AskRunningInstanceToRaise(const std::string& dataFolder, int timeoutMs = 2000);

inline constexpr const char* kLockFileName = "jukarra.lock";

}  // namespace jk
