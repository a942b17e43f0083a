#pragma once

// mpv's JSON IPC protocol: command lines out, reply and event lines in. A line in is read with
// a small bounded parser that keeps only what the transport uses, so any bytes at all give a
// reply, an event or nothing, never a crash.

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace jk {

// An argument of a command: text, a whole number, a fraction or a flag.
using MpvArg = std::variant<std::string_view, std::int64_t, double, bool>;

// `{"command":[...],"request_id":ID}` and a line feed. Text is escaped as JSON requires; bytes
// that are not UTF-8 pass as they are, so any path reaches mpv unchanged.
std::string MpvCommandLine(std::span<const MpvArg> command, std::int64_t requestId);

// The value of a reply's "data".
struct MpvData {
    enum class Type : std::uint8_t { None, Null, Bool, Number, Text, Other };
    Type type = Type::None;
    bool flag = false;
    double number = 0;
    std::string text;
};

struct MpvMessage {
    std::optional<std::int64_t> requestId;
    std::string error;  // "success" for a command that worked
    std::string event;  // the name of an event; empty for a reply
    MpvData data;

    bool Ok() const { return error == "success"; }
};

// One line from mpv; nullopt when it is not a JSON object.
std::optional<MpvMessage> ParseMpvLine(std::string_view line);

}  // namespace jk
