#include "platform/UnixSocketChannel.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace jk {

namespace {

using SteadyClock = std::chrono::steady_clock;

// A line longer than this is no reply of mpv's: the connection is dropped rather than
// buffered without end.
constexpr std::size_t kMaxLineBytes = std::size_t{4} * 1024 * 1024;
constexpr std::size_t kReadChunk = std::size_t{64} * 1024;

int MillisecondsUntil(SteadyClock::time_point then, SteadyClock::time_point now) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(then - now).count();
    return static_cast<int>(std::clamp<std::int64_t>(left, 0, 1000000));
}

}  // namespace

UnixSocketChannel::UnixSocketChannel(std::string socketPath) : m_path(std::move(socketPath)) {}

UnixSocketChannel::~UnixSocketChannel() {
    Disconnect();
}

void UnixSocketChannel::Disconnect() {
    if (m_fd >= 0) {
        ::close(m_fd);
        m_fd = -1;
    }
    m_in.clear();
}

UnixSocketChannel::ReadOutcome UnixSocketChannel::ReadSome() {
    char buffer[kReadChunk];
    while (true) {
        const ssize_t got = ::recv(m_fd, buffer, sizeof buffer, MSG_DONTWAIT);
        if (got > 0) {
            m_in.append(buffer, static_cast<std::size_t>(got));
            return ReadOutcome::Data;
        }
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) {
            return ReadOutcome::Nothing;
        }
        return ReadOutcome::Ended;
    }
}

bool UnixSocketChannel::DrainWithoutWaiting() {
    while (true) {
        pollfd watch{m_fd, POLLIN, 0};
        const int ready = ::poll(&watch, 1, 0);
        if (ready < 0 && errno == EINTR) {
            continue;
        }
        if (ready < 0) {
            return false;
        }
        if (ready == 0) {
            return true;
        }
        if ((watch.revents & POLLIN) == 0) {
            return false;  // hung up or failed
        }
        const ReadOutcome outcome = ReadSome();
        if (outcome != ReadOutcome::Data) {
            return outcome == ReadOutcome::Nothing;
        }
        // Whole lines that arrived between exchanges (events, late replies) are nobody's.
        const std::size_t end = m_in.find_last_of('\n');
        if (end != std::string::npos) {
            m_in.erase(0, end + 1);
        }
        if (m_in.size() > kMaxLineBytes) {
            return false;
        }
    }
}

bool UnixSocketChannel::Connect() {
    if (m_fd >= 0) {
        if (DrainWithoutWaiting()) {
            return true;
        }
        Disconnect();
    }
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (m_path.empty() || m_path.size() >= sizeof address.sun_path) {
        return false;  // a socket path this long cannot be bound either
    }
    std::memcpy(address.sun_path, m_path.data(), m_path.size());
    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (fd < 0) {
        return false;
    }
    // A local connect either succeeds or fails at once; a full backlog (a player that no
    // longer accepts) fails with EAGAIN rather than making us wait.
    int result = 0;
    do {
        result = ::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    } while (result != 0 && errno == EINTR);
    if (result != 0) {
        ::close(fd);
        return false;
    }
    m_fd = fd;
    m_in.clear();
    return true;
}

ExchangeResult UnixSocketChannel::Exchange(std::string_view out,
                                           const std::function<bool(std::string_view line)>& onLine,
                                           int quietMs, int totalMs) {
    if (m_fd < 0) {
        return ExchangeResult::Closed;
    }
    const SteadyClock::time_point deadline =
        SteadyClock::now() + std::chrono::milliseconds(std::max(totalMs, 0));
    SteadyClock::time_point lastMove = SteadyClock::now();
    std::size_t written = 0;
    bool answered = false;
    std::size_t scanned = 0;  // m_in up to here holds no line end
    while (true) {
        // Hand out the whole lines received.
        std::size_t end = m_in.find('\n', scanned);
        std::size_t start = 0;
        while (end != std::string::npos) {
            std::string_view line(m_in.data() + start, end - start);
            if (!line.empty() && line.back() == '\r') {
                line.remove_suffix(1);
            }
            if (!answered && onLine(line)) {
                answered = true;
            }
            start = end + 1;
            end = m_in.find('\n', start);
        }
        m_in.erase(0, start);
        scanned = m_in.size();
        if (m_in.size() > kMaxLineBytes) {
            Disconnect();
            return ExchangeResult::Closed;
        }
        if (answered && written == out.size()) {
            return ExchangeResult::Done;
        }

        const SteadyClock::time_point now = SteadyClock::now();
        const int wait =
            std::min(MillisecondsUntil(lastMove + std::chrono::milliseconds(quietMs), now),
                     MillisecondsUntil(deadline, now));
        if (wait <= 0) {
            return ExchangeResult::TimedOut;
        }
        pollfd watch{m_fd, static_cast<short>(POLLIN | (written < out.size() ? POLLOUT : 0)), 0};
        const int ready = ::poll(&watch, 1, wait);
        if (ready < 0) {
            if (errno == EINTR) {
                continue;
            }
            Disconnect();
            return ExchangeResult::Closed;
        }
        if (ready == 0) {
            continue;
        }
        if ((watch.revents & POLLIN) != 0) {
            const ReadOutcome outcome = ReadSome();
            if (outcome == ReadOutcome::Ended) {
                Disconnect();
                return ExchangeResult::Closed;
            }
            if (outcome == ReadOutcome::Data) {
                lastMove = SteadyClock::now();
            }
        } else if ((watch.revents & (POLLHUP | POLLERR | POLLNVAL)) != 0) {
            Disconnect();
            return ExchangeResult::Closed;
        }
        if ((watch.revents & POLLOUT) != 0 && written < out.size()) {
            const ssize_t sent = ::send(m_fd, out.data() + written, out.size() - written,
                                        MSG_DONTWAIT | MSG_NOSIGNAL);
            if (sent > 0) {
                written += static_cast<std::size_t>(sent);
                lastMove = SteadyClock::now();
            } else if (sent < 0 && errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR) {
                Disconnect();
                return ExchangeResult::Closed;
            }
        }
    }
}

}  // namespace jk
