#include "platform/TerminationWatch.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <vector>

#include <sys/socket.h>
#include <unistd.h>

#include <QSocketNotifier>

namespace jk {

namespace {

constexpr std::array<int, 3> kWatchedSignals = {SIGTERM, SIGINT, SIGHUP};

// The write end for the handler; -1 while no watch exists.
volatile std::sig_atomic_t g_writeEnd = -1;

void OnSignal(int signal) {
    const int savedErrno = errno;
    const auto number = static_cast<unsigned char>(signal);
    // Non-blocking: when the pipe is full, a close has been asked for many times already.
    [[maybe_unused]] const ssize_t written = ::write(g_writeEnd, &number, 1);
    errno = savedErrno;
}

}  // namespace

struct TerminationWatch::Impl {
    std::function<void(int)> onSignal;
    std::array<int, 2> ends = {-1, -1};
    std::unique_ptr<QSocketNotifier> notifier;
    std::array<struct sigaction, kWatchedSignals.size()> previous{};
    std::array<bool, kWatchedSignals.size()> installed{};

    void Drain() {
        std::vector<int> received;
        unsigned char number = 0;
        while (::read(ends[1], &number, 1) == 1) {
            received.push_back(number);
        }
        // Called after reading, as the call may run an event loop of its own.
        for (const int signal : received) {
            onSignal(signal);
        }
    }
};

TerminationWatch::TerminationWatch(std::function<void(int signal)> onSignal)
    : m_impl(std::make_unique<Impl>()) {
    m_impl->onSignal = std::move(onSignal);
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, m_impl->ends.data()) !=
        0) {
        m_impl->ends = {-1, -1};
        return;
    }
    m_impl->notifier = std::make_unique<QSocketNotifier>(m_impl->ends[1], QSocketNotifier::Read);
    QObject::connect(m_impl->notifier.get(), &QSocketNotifier::activated, m_impl->notifier.get(),
                     [impl = m_impl.get()] { impl->Drain(); });
    g_writeEnd = m_impl->ends[0];

    for (std::size_t i = 0; i < kWatchedSignals.size(); ++i) {
        struct sigaction current {};
        if (::sigaction(kWatchedSignals[i], nullptr, &current) != 0 ||
            current.sa_handler == SIG_IGN) {
            continue;
        }
        struct sigaction action {};
        action.sa_handler = OnSignal;
        sigemptyset(&action.sa_mask);
        action.sa_flags = SA_RESTART;
        m_impl->installed[i] = ::sigaction(kWatchedSignals[i], &action, &m_impl->previous[i]) == 0;
    }
}

TerminationWatch::~TerminationWatch() {
    for (std::size_t i = 0; i < kWatchedSignals.size(); ++i) {
        if (m_impl->installed[i]) {
            ::sigaction(kWatchedSignals[i], &m_impl->previous[i], nullptr);
        }
    }
    m_impl->notifier.reset();
    if (Active()) {
        g_writeEnd = -1;
        ::close(m_impl->ends[0]);
        ::close(m_impl->ends[1]);
    }
}

bool TerminationWatch::Active() const {
    return m_impl->ends[0] >= 0;
}

}  // namespace jk
