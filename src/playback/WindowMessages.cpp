#include "playback/WindowMessages.h"

#include "playback/PlayerKind.h"
#include "util/Text.h"
#include "util/Utf8.h"

namespace jk {

namespace {

using C = PlayerCommand;

constexpr std::array<PlayerWindow, 5> kWindows = {{
    {WindowSearch::ByTitle, kWinPlay3Title},
    {WindowSearch::ByClass, "Winamp v1.x"},
    {WindowSearch::FirstTopLevelOfClass, "NadMainWindow"},
    {WindowSearch::ByClass, "Sonique Window Class"},
    {WindowSearch::ByClass, "KJofolMainWindow"},
}};

constexpr WindowCommand Click(std::uint64_t id) {
    return {WindowCall::Click, 0, id, 0};
}
constexpr WindowCommand Key(char key) {
    return {WindowCall::Post, kWmKeyDown, static_cast<std::uint64_t>(key), 0};
}
constexpr WindowCommand KeyPair(char key) {
    return {WindowCall::PostKeyPair, kWmKeyDown, static_cast<std::uint64_t>(key), 0};
}
constexpr WindowCommand SendCommand(std::uint64_t id) {
    return {WindowCall::Send, kWmCommand, id, 0};
}
constexpr WindowCommand PostCommand(std::uint64_t id) {
    return {WindowCall::Post, kWmCommand, id, 0};
}

// Rows: Next, Pause, Play, Previous, Stop. Columns: the kinds 1 to 5. NAD's Next and Previous
// are WinPlay3's the other way round, and K-Jofol's Next alone is a lower-case "b": both are
// what those players answer to.
constexpr std::array<C, 5> kTransportRows = {C::Next, C::Pause, C::Play, C::Previous, C::Stop};
constexpr std::array<std::array<WindowCommand, 5>, 5> kTransport = {{
    {Click(40014), Key('B'), SendCommand(40013), Key('B'), KeyPair('b')},
    {Click(40012), Key('C'), SendCommand(40012), Key('C'), KeyPair('C')},
    {Click(40010), SendCommand(40045), SendCommand(40010), Key('X'), KeyPair('X')},
    {Click(40013), Key('Z'), SendCommand(40014), Key('Z'), KeyPair('Z')},
    {Click(40011), Key('V'), SendCommand(40011), Key('V'), KeyPair('V')},
}};

struct CommandMessage {
    C command;
    WindowCommand message;
};

constexpr std::array<CommandMessage, 9> kWinampOnly = {{
    {C::VolumeDown, PostCommand(40059)},
    {C::VolumeUp, PostCommand(40058)},
    {C::Fade, PostCommand(40147)},
    {C::SkipAhead, PostCommand(40060)},
    {C::SkipBack, PostCommand(40061)},
    {C::Equalizer, SendCommand(40036)},
    {C::Selector, SendCommand(40191)},
    {C::PlugInProperties, SendCommand(40221)},
    {C::PlugInRun, SendCommand(40192)},
}};

constexpr std::array<CommandMessage, 3> kSysCommands = {{
    {C::Close, {WindowCall::Send, kWmSysCommand, 0xF060, 0}},
    {C::Minimize, {WindowCall::Send, kWmSysCommand, 0xF020, 0}},
    {C::Restore, {WindowCall::Send, kWmSysCommand, 0xF120, 0}},
}};

template <std::size_t N>
const WindowCommand* Lookup(const std::array<CommandMessage, N>& table, C command) {
    for (const CommandMessage& entry : table) {
        if (entry.command == command) {
            return &entry.message;
        }
    }
    return nullptr;
}

std::string_view CutSuffix(std::string_view text, std::string_view suffix) {
    return EndsWith(text, suffix) ? text.substr(0, text.size() - suffix.size()) : text;
}

}  // namespace

const PlayerWindow* WindowOfKind(std::int16_t kind) {
    return IsWindowPlayerKind(kind) ? &kWindows[static_cast<std::size_t>(kind - 1)] : nullptr;
}

const WindowCommand* TransportMessage(std::int16_t kind, PlayerCommand command) {
    if (!IsWindowPlayerKind(kind)) {
        return nullptr;
    }
    for (std::size_t row = 0; row < kTransportRows.size(); ++row) {
        if (kTransportRows[row] == command) {
            return &kTransport[row][static_cast<std::size_t>(kind - 1)];
        }
    }
    return nullptr;
}

const WindowCommand* WinampOnlyMessage(PlayerCommand command) {
    return Lookup(kWinampOnly, command);
}

const WindowCommand* WindowSysCommand(PlayerCommand command) {
    return Lookup(kSysCommands, command);
}

std::string WinampSongTitle(std::string_view windowText) {
    std::string_view text = windowText.substr(0, windowText.find('\0'));
    text = CharLeft(text, 255);
    text = CutSuffix(text, "- Microsoft Internet Explorer");
    if (const std::size_t dot = text.find('.'); dot != std::string_view::npos) {
        text.remove_prefix(dot + 1);
    }
    text = Trim(text);
    text = Trim(CutSuffix(text, " - Winamp"));
    return std::string(text);
}

}  // namespace jk
