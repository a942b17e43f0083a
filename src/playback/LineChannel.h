#pragma once

// A connection that carries lines of text both ways (mpv's socket), as the transports need it:
// lines out, lines in, and a time-out on every wait, so that a player that refuses or hangs
// never holds up the caller for longer than that.

#include <cstdint>
#include <functional>
#include <string_view>

namespace jk {

enum class ExchangeResult : std::uint8_t {
    Done,      // everything was written and the reader had all it waited for
    TimedOut,  // the other side fell silent
    Closed,    // the connection is gone (or could not be made)
};

class LineChannel {
public:
    virtual ~LineChannel() = default;

    // Connects when not connected; true when connected afterwards.
    virtual bool Connect() = 0;
    virtual void Disconnect() = 0;

    // Writes `out` (whole lines) and hands each line that arrives, without its end, to `onLine`
    // until it returns true. While writing it keeps reading, so that neither side waits on the
    // other. Gives up when nothing moves for `quietMs` or the whole exchange takes `totalMs`.
    virtual ExchangeResult Exchange(std::string_view out,
                                    const std::function<bool(std::string_view line)>& onLine,
                                    int quietMs, int totalMs) = 0;
};

}  // namespace jk
