#pragma once

// Stand-ins for the player side of the bridge: a transport that writes down every call, a
// platform that starts no program and finds no socket, a window system with one player window
// that writes down every message, and a clock the test moves by hand.

#include <chrono>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "playback/PlayerBridge.h"
#include "playback/PlayerPlatform.h"
#include "playback/PlayerTransport.h"
#include "playback/WindowMessages.h"

namespace jk::test {

class FakeClock {
public:
    using TimePoint = std::chrono::steady_clock::time_point;
    TimePoint Now() const { return m_now; }
    void Advance(std::chrono::milliseconds step) { m_now += step; }

private:
    TimePoint m_now{std::chrono::hours(1)};
};

// The calls a transport received, as "Play", "Clear", "Add PATH", ...
struct CallLog {
    std::vector<std::string> calls;
    void Add(std::string call) { calls.push_back(std::move(call)); }
};

class FakeTransport : public PlayerTransport {
public:
    explicit FakeTransport(CallLog& log) : m_log(log) {}

    bool running = true;
    bool messageRoad = true;
    bool opensFiles = true;
    std::size_t addsBeforeDying = static_cast<std::size_t>(-1);  // songs taken, then it dies
    std::int32_t volume = 80;
    PlayerStatus status;

    bool Running() override { return running; }
    void Play() override { m_log.Add("Play"); }
    void Pause() override { m_log.Add("Pause"); }
    void Stop() override { m_log.Add("Stop"); }
    void Next() override { m_log.Add("Next"); }
    void Previous() override { m_log.Add("Previous"); }
    void VolumeUp() override {
        volume += 5;
        m_log.Add("VolumeUp");
    }
    void Close() override { m_log.Add("Close"); }
    std::optional<std::int32_t> Volume() override {
        return running ? std::optional(volume) : std::nullopt;
    }
    bool SetVolume(std::int32_t percent) override {
        if (!running) {
            return false;
        }
        volume = percent;
        m_log.Add("SetVolume " + std::to_string(percent));
        return true;
    }
    bool HasMessageRoad() override { return messageRoad; }
    void ClearList() override { m_log.Add("Clear"); }
    AddResult AddSongs(std::span<const std::string> paths) override {
        for (const std::string& path : paths) {
            if (addsBeforeDying == 0) {
                running = false;
                return AddResult::Failed;
            }
            --addsBeforeDying;
            m_log.Add("Add " + path);
        }
        m_log.Add("Batch " + std::to_string(paths.size()));
        return AddResult::Added;
    }
    bool OpenAndPlay(const std::string& path) override {
        m_log.Add("Open " + path);
        return opensFiles;
    }
    PlayerStatus Status() override { return status; }

private:
    CallLog& m_log;
};

// Starts nothing, records what it was asked to start; no socket answers, no bus is there.
class FakePlatform : public PlayerPlatform {
public:
    struct Started {
        std::string program;
        std::vector<std::string> arguments;
    };
    std::vector<Started> started;
    bool startFails = false;
    // Opens the channel of a socket path; when empty, every socket refuses.
    std::function<std::unique_ptr<LineChannel>(const std::string&)> channels;
    std::function<std::unique_ptr<MprisBus>()> bus;
    WindowMessenger* windows = nullptr;

    std::unique_ptr<LineChannel> SocketChannel(const std::string& path) override;
    std::unique_ptr<MprisBus> SessionBus() override;
    WindowMessenger& Windows() override {
        return windows != nullptr ? *windows : PlayerPlatform::Windows();
    }
    ProgramStart StartProgram(const std::string& program,
                              const std::vector<std::string>& arguments) override {
        started.push_back({program, arguments});
        return startFails ? ProgramStart{false, program + ": no such program"}
                          : ProgramStart{true, {}};
    }
    bool ProgramThere(const std::string& program) override { return !program.empty(); }
};

// A channel to a socket nobody listens on.
class RefusingChannel : public LineChannel {
public:
    bool Connect() override { return false; }
    void Disconnect() override {}
    ExchangeResult Exchange(std::string_view, const std::function<bool(std::string_view)>&, int,
                            int) override {
        return ExchangeResult::Closed;
    }
};

// A session bus with nobody on it.
class EmptyBus : public MprisBus {
public:
    std::vector<std::string> ListNames() override { return {}; }
    bool NameHasOwner(const std::string&) override { return false; }
    bool CallPlayer(const std::string&, std::string_view) override { return false; }
    bool Seek(const std::string&, std::int64_t) override { return false; }
    bool SetPosition(const std::string&, const std::string&, std::int64_t) override {
        return false;
    }
    bool OpenUri(const std::string&, const std::string&) override { return false; }
    bool SetVolume(const std::string&, double) override { return false; }
    std::optional<MprisPlayerState> PlayerState(const std::string&) override {
        return std::nullopt;
    }
    bool CallRoot(const std::string&, std::string_view) override { return false; }
    std::optional<MprisRootState> RootState(const std::string&) override { return std::nullopt; }
    std::optional<std::vector<std::string>> Tracks(const std::string&) override {
        return std::nullopt;
    }
    bool AddTrack(const std::string&, const std::string&, const std::string&, bool) override {
        return false;
    }
    bool RemoveTrack(const std::string&, const std::string&) override { return false; }
};

inline std::unique_ptr<MprisBus> FakePlatform::SessionBus() {
    return bus ? bus() : std::make_unique<EmptyBus>();
}

inline std::unique_ptr<LineChannel> FakePlatform::SocketChannel(const std::string& path) {
    return channels ? channels(path) : std::make_unique<RefusingChannel>();
}

// A window system holding the windows of all five players (handle = kind), writing down every
// message as "Send h msg w l", "Post h msg w l", "CopyData h data cb TEXT", "Show h cmd".
class RecordingWindows : public WindowMessenger {
public:
    std::vector<std::string> log;
    bool windowsExist = true;
    std::function<std::int64_t(std::uint32_t msg, std::uint64_t w, std::int64_t l)> answer;
    std::string windowText;

    WindowHandle FindByTitle(std::string_view title) override {
        return windowsExist && title == "WinPlay3" ? 1 : 0;
    }
    WindowHandle FindByClass(std::string_view windowClass) override {
        if (!windowsExist) {
            return 0;
        }
        if (windowClass == "Winamp v1.x") {
            return 2;
        }
        if (windowClass == "Sonique Window Class") {
            return 4;
        }
        return windowClass == "KJofolMainWindow" ? 5 : 0;
    }
    WindowHandle FindFirstTopLevel(std::string_view windowClass) override {
        return windowsExist && windowClass == "NadMainWindow" ? 3 : 0;
    }
    WindowHandle FindChildById(WindowHandle parent, std::uint16_t id) override {
        return parent * 100000 + id;
    }
    std::int64_t Send(WindowHandle h, std::uint32_t msg, std::uint64_t w, std::int64_t l) override {
        log.push_back(Line("Send", h, msg, w, l));
        return answer ? answer(msg, w, l) : 0;
    }
    void Post(WindowHandle h, std::uint32_t msg, std::uint64_t w, std::int64_t l) override {
        log.push_back(Line("Post", h, msg, w, l));
    }
    std::int64_t SendCopyData(WindowHandle h, std::uint64_t data, std::uint32_t cb,
                              std::span<const std::uint8_t> buffer) override {
        const auto* text = reinterpret_cast<const char*>(buffer.data());
        log.push_back("CopyData " + std::to_string(h) + " " + std::to_string(data) + " " +
                      std::to_string(cb) + " " + std::string(text, ::strnlen(text, buffer.size())) +
                      " " + std::to_string(buffer.size()));
        return 1;
    }
    void ShowWindow(WindowHandle h, int command) override {
        log.push_back("Show " + std::to_string(h) + " " + std::to_string(command));
    }
    std::string WindowText(WindowHandle) override { return windowText; }

private:
    static std::string Line(const char* call, WindowHandle h, std::uint32_t msg, std::uint64_t w,
                            std::int64_t l) {
        return std::string(call) + " " + std::to_string(h) + " " + std::to_string(msg) + " " +
               std::to_string(w) + " " + std::to_string(l);
    }
};

// A bridge over the fake platform whose transports are FakeTransports writing to `log`;
// `player` is the one made last. Fixtures derive from it to steer a player and read its calls.
struct FakeBridgeRig {
    CallLog log;
    FakePlatform platform;
    FakeTransport* player = nullptr;
    PlayerBridge bridge{platform, {}, [this](const PlayerTarget&) {
                            auto made = std::make_unique<FakeTransport>(log);
                            player = made.get();
                            return made;
                        }};
};

}  // namespace jk::test
