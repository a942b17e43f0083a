#pragma once

// A line channel over a Unix domain socket (mpv's IPC socket): non-blocking, with every wait
// bounded, so that a player that refuses or hangs costs a time-out and never freezes the caller.

#include <string>

#include "playback/LineChannel.h"

namespace jk {

class UnixSocketChannel final : public LineChannel {
public:
    explicit UnixSocketChannel(std::string socketPath);
    ~UnixSocketChannel() override;
    UnixSocketChannel(const UnixSocketChannel&) = delete;
    UnixSocketChannel& operator=(const UnixSocketChannel&) = delete;

    // Connects when not connected, or when the other side closed the last connection.
    bool Connect() override;
    void Disconnect() override;
    ExchangeResult Exchange(std::string_view out,
                            const std::function<bool(std::string_view line)>& onLine, int quietMs,
                            int totalMs) override;

private:
    enum class ReadOutcome { Data, Nothing, Ended };

    // Reads what has come without waiting; false when the other side has gone.
    bool DrainWithoutWaiting();
    // Reads once without waiting.
    ReadOutcome ReadSome();

    std::string m_path;
    int m_fd = -1;
    std::string m_in;  // received text not yet handed out
};

}  // namespace jk
