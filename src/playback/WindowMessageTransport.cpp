#include "playback/WindowMessageTransport.h"

#include <algorithm>

#include "playback/PlayerKind.h"
#include "util/FileIo.h"

namespace jk {

namespace {

// winamp.m3u is read whole, up to this size.
constexpr std::int64_t kMaxListBytes = 64ll * 1024 * 1024;
constexpr std::int64_t kWinampPlaying = 1;
constexpr std::int64_t kWinampPaused = 3;

}  // namespace

WindowMessageTransport::WindowMessageTransport(std::int16_t kind, WindowMessenger& messenger,
                                               std::string listFolder)
    : m_kind(kind), m_messenger(messenger), m_listFolder(std::move(listFolder)) {}

WindowHandle WindowMessageTransport::Find() {
    const PlayerWindow* window = WindowOfKind(m_kind);
    if (window == nullptr) {
        return 0;
    }
    switch (window->search) {
        case WindowSearch::ByTitle:
            return m_messenger.FindByTitle(window->name);
        case WindowSearch::ByClass:
            return m_messenger.FindByClass(window->name);
        case WindowSearch::FirstTopLevelOfClass:
            return m_messenger.FindFirstTopLevel(window->name);
    }
    return 0;
}

PlayerAbilities WindowMessageTransport::Abilities() {
    return {};
}

void WindowMessageTransport::Deliver(WindowHandle window, const WindowCommand& command) {
    switch (command.call) {
        case WindowCall::Send:
            m_messenger.Send(window, command.message, command.wParam, command.lParam);
            break;
        case WindowCall::Post:
            m_messenger.Post(window, command.message, command.wParam, command.lParam);
            break;
        case WindowCall::PostKeyPair:
            m_messenger.Post(window, kWmKeyDown, command.wParam, 0);
            m_messenger.Post(window, kWmKeyUp, command.wParam, 0);
            break;
        case WindowCall::Click: {
            // A press and release of the button, as the mouse would do it.
            const WindowHandle button =
                m_messenger.FindChildById(window, static_cast<std::uint16_t>(command.wParam));
            if (button != 0) {
                m_messenger.Post(button, kWmLButtonDown, 0, 0);
                m_messenger.Post(button, kBmSetState, 1, 0);
                m_messenger.Post(button, kWmLButtonUp, 0, 0);
                m_messenger.Post(button, kBmSetState, 0, 0);
            }
            break;
        }
    }
}

void WindowMessageTransport::SendTransport(PlayerCommand command) {
    const WindowCommand* message = TransportMessage(m_kind, command);
    if (message == nullptr) {
        return;
    }
    if (const WindowHandle window = Find(); window != 0) {
        Deliver(window, *message);
    }
}

void WindowMessageTransport::SendWinampOnly(PlayerCommand command) {
    const WindowCommand* message = WinampOnlyMessage(command);
    if (m_kind != kPlayerWinamp || message == nullptr) {
        return;
    }
    if (const WindowHandle window = Find(); window != 0) {
        Deliver(window, *message);
    }
}

void WindowMessageTransport::SendSysCommand(PlayerCommand command, WindowHandle window) {
    if (const WindowCommand* message = WindowSysCommand(command); message && window != 0) {
        Deliver(window, *message);
    }
}

// WinPlay3's window commands look its window up by title themselves; for the others the
// search of their kind finds it.
void WindowMessageTransport::Close() {
    SendSysCommand(PlayerCommand::Close, Find());
}

void WindowMessageTransport::Minimize() {
    const WindowHandle window = Find();
    SendSysCommand(PlayerCommand::Minimize, window);
    if (m_kind == kPlayerWinPlay3) {
        m_messenger.ShowWindow(window, kShowHide);
        m_windowState = 2;
    }
}

void WindowMessageTransport::Restore() {
    SendSysCommand(PlayerCommand::Restore, Find());
    m_windowState = 1;
}

bool WindowMessageTransport::HasMessageRoad() {
    return m_kind == kPlayerWinamp || m_kind == kPlayerNad;
}

std::uint32_t WindowMessageTransport::NadRecordLength() const {
    return m_lastCbData;
}

void WindowMessageTransport::ClearList() {
    const WindowHandle window = Find();
    if (window == 0) {
        return;
    }
    if (m_kind == kPlayerWinamp) {
        m_messenger.Send(window, kWmUser, 0, kWinampClearList);
    } else if (m_kind == kPlayerNad) {
        // The record as the last add left it (zero on a first run): what NAD makes of it is
        // its own affair.
        m_messenger.SendCopyData(window, m_lastDwData, NadRecordLength(), m_buffer);
    }
}

AddResult WindowMessageTransport::AddSongs(std::span<const std::string> paths) {
    const WindowHandle window = Find();
    if (window == 0 || !HasMessageRoad()) {
        return AddResult::Failed;
    }
    for (const std::string& path : paths) {
        if (path.size() > kCopyDataMaxPath) {
            return AddResult::PathTooLong;
        }
        m_buffer.fill(0);
        std::copy(path.begin(), path.end(), m_buffer.begin());
        const auto length = static_cast<std::uint32_t>(path.size());
        if (m_kind == kPlayerWinamp) {
            m_lastDwData = kWinampCopyDataAdd;
            m_lastCbData = length + 1;
        } else {
            m_lastDwData = kNadCopyDataAdd;
            m_lastCbData = length;
        }
        m_messenger.SendCopyData(window, m_lastDwData, m_lastCbData, m_buffer);
    }
    return AddResult::Added;
}

std::int64_t WindowMessageTransport::AskWinamp(WindowHandle window, std::uint64_t wParam,
                                               std::int64_t lParam) {
    return m_messenger.Send(window, kWmUser, wParam, lParam);
}

PlayerStatus WindowMessageTransport::Status() {
    PlayerStatus status;
    const WindowHandle window = Find();
    if (window == 0) {
        return status;
    }
    const std::int64_t state = AskWinamp(window, 0, kWinampPlayState);
    status.state = state == kWinampPlaying  ? PlayState::Playing
                   : state == kWinampPaused ? PlayState::Paused
                                            : PlayState::Stopped;
    status.positionMs = AskWinamp(window, 0, kWinampPosition);
    status.lengthMs = AskWinamp(window, 1, kWinampPosition) * 1000;
    status.title = WinampSongTitle(m_messenger.WindowText(window));
    status.trackKey = status.title;
    return status;
}

std::int32_t WindowMessageTransport::ListIndex() {
    const WindowHandle window = Find();
    if (window == 0) {
        return -1;
    }
    // This also makes the player write its list to winamp.m3u.
    return static_cast<std::int32_t>(AskWinamp(window, 0, kWinampWriteList));
}

std::int32_t WindowMessageTransport::ListLength() {
    return CountListLines(m_listFolder + std::string(kWinampListName), kWinampListMaxLines);
}

void WindowMessageTransport::SeekTo(std::int64_t positionMs) {
    if (const WindowHandle window = Find(); window != 0) {
        AskWinamp(window, static_cast<std::uint64_t>(std::max<std::int64_t>(positionMs, 0)),
                  kWinampJumpTo);
    }
}

std::int32_t CountListLines(const std::string& path, std::int32_t maxLines) {
    std::string text;
    if (!ReadWholeFile(path, text, kMaxListBytes).ok) {
        return -1;
    }
    std::int32_t lines = 0;
    std::size_t at = 0;
    while (at < text.size() && lines < maxLines) {
        const std::size_t end = text.find('\n', at);
        ++lines;
        if (end == std::string::npos) {
            break;
        }
        at = end + 1;
    }
    return lines;
}

void UnhideWinPlay3(WindowMessenger& messenger) {
    messenger.ShowWindow(messenger.FindByTitle(kWinPlay3Title), kUnhideShowCommand);
}

}  // namespace jk
