#pragma once

// The wire protocol of the five Windows players as data: how each one's main window is found,
// the message each transport command sends, the Winamp-only commands, the window commands, and
// the messages of the message road and of the poll. The messenger that carries them stands in
// for the window system; on Linux none of these windows exists, so the plain messenger finds
// nothing and every command of these kinds does nothing.

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "playback/PlayerCommands.h"

namespace jk {

using WindowHandle = std::uint64_t;  // 0: no window

inline constexpr std::uint32_t kWmKeyDown = 256;
inline constexpr std::uint32_t kWmKeyUp = 257;
inline constexpr std::uint32_t kWmCommand = 273;
inline constexpr std::uint32_t kWmSysCommand = 274;
inline constexpr std::uint32_t kBmSetState = 243;
inline constexpr std::uint32_t kWmLButtonDown = 513;
inline constexpr std::uint32_t kWmLButtonUp = 514;
inline constexpr std::uint32_t kWmUser = 1024;
inline constexpr std::uint32_t kWmCopyData = 74;

// How a command reaches the window.
enum class WindowCall : std::uint8_t {
    Send,         // SendMessage(msg, wParam, lParam)
    Post,         // PostMessage(msg, wParam, lParam)
    PostKeyPair,  // PostMessage key down, then key up, with the key as wParam
    Click,        // WinPlay3: press and release of the child control whose ID is wParam
};

struct WindowCommand {
    WindowCall call = WindowCall::Send;
    std::uint32_t message = 0;
    std::uint64_t wParam = 0;
    std::int64_t lParam = 0;
};

// How a kind's main window is found.
enum class WindowSearch : std::uint8_t { ByTitle, ByClass, FirstTopLevelOfClass };

struct PlayerWindow {
    WindowSearch search = WindowSearch::ByClass;
    std::string_view name;  // the title or the class
};

// The window system, as the players' protocol needs it.
class WindowMessenger {
public:
    virtual ~WindowMessenger() = default;
    virtual WindowHandle FindByTitle(std::string_view /*title*/) { return 0; }
    virtual WindowHandle FindByClass(std::string_view /*windowClass*/) { return 0; }
    // The first top-level window of a class, any title.
    virtual WindowHandle FindFirstTopLevel(std::string_view /*windowClass*/) { return 0; }
    // The child window with a control ID.
    virtual WindowHandle FindChildById(WindowHandle /*parent*/, std::uint16_t /*id*/) { return 0; }
    virtual std::int64_t Send(WindowHandle /*window*/, std::uint32_t /*message*/,
                              std::uint64_t /*wParam*/, std::int64_t /*lParam*/) {
        return 0;
    }
    virtual void Post(WindowHandle /*window*/, std::uint32_t /*message*/, std::uint64_t /*wParam*/,
                      std::int64_t /*lParam*/) {}
    // WM_COPYDATA with a record of dwData, cbData and the buffer.
    virtual std::int64_t SendCopyData(WindowHandle /*window*/, std::uint64_t /*dwData*/,
                                      std::uint32_t /*cbData*/,
                                      std::span<const std::uint8_t> /*buffer*/) {
        return 0;
    }
    virtual void ShowWindow(WindowHandle /*window*/, int /*command*/) {}
    virtual std::string WindowText(WindowHandle /*window*/) { return {}; }
};

// Kinds 1 to 5; nullptr for any other kind.
const PlayerWindow* WindowOfKind(std::int16_t kind);

// The message a transport command (Play, Pause, Stop, Previous, Next) sends to a kind (1 to 5);
// nullptr for other commands or kinds.
const WindowCommand* TransportMessage(std::int16_t kind, PlayerCommand command);

// The nine commands sent only to Winamp (volume, fade, skip, equalizer, plug-ins); nullptr
// for the others.
const WindowCommand* WinampOnlyMessage(PlayerCommand command);

// Close, Minimize and Restore: WM_SYSCOMMAND with these values, for every kind.
const WindowCommand* WindowSysCommand(PlayerCommand command);

// The message road and the poll.
inline constexpr std::int64_t kWinampClearList = 101;  // WM_USER, lParam
inline constexpr std::int64_t kWinampPlayState = 104;
inline constexpr std::int64_t kWinampPosition = 105;  // wParam 0: ms; wParam 1: length in s
inline constexpr std::int64_t kWinampJumpTo = 106;    // wParam: the position in ms
inline constexpr std::int64_t kWinampWriteList = 120;
inline constexpr std::uint64_t kWinampCopyDataAdd = 100;
inline constexpr std::uint64_t kNadCopyDataAdd = 1;
// The zeroed buffer a path is handed in; a longer path does not fit.
inline constexpr std::size_t kCopyDataBufferBytes = 255;
inline constexpr std::size_t kCopyDataMaxPath = 254;

// WinPlay3's title, by which its window is found, and the caption of its tray icon.
inline constexpr std::string_view kWinPlay3Title = "WinPlay3";
inline constexpr std::string_view kWinPlayIconCaption = "WinPlay 3";
// The show command that un-hides a hidden WinPlay3 at shutdown; the odd value is the one the
// player expects.
inline constexpr int kUnhideShowCommand = -1;
// The show commands of WinPlay3's Minimize.
inline constexpr int kShowHide = 0;

// The song panel's text from Winamp's window title: a browser's suffix cut, what follows the
// first "." taken and trimmed, then a " - Winamp" suffix cut and trimmed again.
std::string WinampSongTitle(std::string_view windowText);

}  // namespace jk
