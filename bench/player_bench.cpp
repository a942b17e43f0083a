// The bridge to a real mpv, and to mpv as an MPRIS player, timed:
//  - "P&lay playlist" of 10,000 songs with mpv running, song by song over its socket: the time
//    to the first song playing, to the whole list in mpv, and the longest gap between two
//    progress calls (when the window would run its event loop); beside it, in the same run, the
//    command-line road: mpv started with the same list in templist.m3u.
//  - the round trip of a remote command (pause, next) to mpv and to the MPRIS player: median
//    and 99th percentile over 200.
// mpv plays into no sound device. Without mpv the program says so and ends; without a session
// bus it runs itself again under dbus-run-session for the MPRIS part.
//
//   player_bench [SONGS]

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

#include "platform/ExecutableSearch.h"
#include "platform/SystemPlayerPlatform.h"
#include "platform/UnixSocketChannel.h"
#include "playback/MprisTransport.h"
#include "playback/MpvProtocol.h"
#include "playback/PlayerKind.h"
#include "playback/RunPlaylist.h"

namespace {

using Clock = std::chrono::steady_clock;
namespace fs = std::filesystem;

double Ms(Clock::duration span) {
    return std::chrono::duration<double, std::milli>(span).count();
}

bool WaitFor(const std::function<bool()>& done, std::chrono::milliseconds limit) {
    const auto end = Clock::now() + limit;
    while (!done()) {
        if (Clock::now() >= end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

// One question to mpv on a connection of its own.
std::optional<jk::MpvMessage> Ask(jk::UnixSocketChannel& channel, const std::string& property) {
    if (!channel.Connect()) {
        return std::nullopt;
    }
    std::optional<jk::MpvMessage> reply;
    const std::string line = R"({"command":["get_property",")" + property +
                             R"("],"request_id":9})"
                             "\n";
    channel.Exchange(
        line,
        [&reply](std::string_view text) {
            auto message = jk::ParseMpvLine(text);
            if (message && message->requestId == 9) {
                reply = std::move(message);
                return true;
            }
            return false;
        },
        1000, 2000);
    return reply;
}

pid_t PidOf(const std::string& socket) {
    jk::UnixSocketChannel channel(socket);
    const auto reply = Ask(channel, "pid");
    return reply && reply->Ok() ? static_cast<pid_t>(reply->data.number) : 0;
}

void End(pid_t pid) {
    if (pid > 0) {
        ::kill(pid, SIGTERM);
        WaitFor([pid] { return ::kill(pid, 0) != 0; }, std::chrono::seconds(3));
    }
}

// The folder of the run: an mpv of its own in bin/ and the songs, 10,000 names of one file.
struct Rig {
    fs::path root;
    std::string mpv;
    std::vector<std::string> songs;

    Rig(std::size_t count, const std::string& realMpv, const std::string& plugIn) {
        char pattern[] = "/tmp/jk-player-bench-XXXXXX";
        root = ::mkdtemp(pattern);
        fs::create_directories(root / "bin");
        fs::create_directories(root / "music");
        mpv = (root / "bin" / "mpv").string();
        std::string script =
            "#!/bin/sh\nexec '" + realMpv + "' --no-config --ao=null --really-quiet --no-terminal";
        if (!plugIn.empty()) {
            script += " '--script=" + plugIn + "'";
        }
        script += " \"$@\"\n";
        std::FILE* out = std::fopen(mpv.c_str(), "w");
        std::fputs(script.c_str(), out);
        std::fclose(out);
        ::chmod(mpv.c_str(), 0755);
        // Ten minutes of silence: MPEG-1 Layer III mono frames at 32 kbit/s, 48 kHz.
        std::string frame(96, '\0');
        frame[0] = '\xFF';
        frame[1] = '\xFB';
        frame[2] = '\x14';
        frame[3] = '\xC4';
        const std::string first = (root / "music" / "song 0.mp3").string();
        out = std::fopen(first.c_str(), "wb");
        for (int i = 0; i < 25000; ++i) {
            std::fwrite(frame.data(), 1, frame.size(), out);
        }
        std::fclose(out);
        songs.push_back(first);
        for (std::size_t i = 1; i < count; ++i) {
            const fs::path name = root / "music" / ("song " + std::to_string(i) + ".mp3");
            fs::create_hard_link(first, name);
            songs.push_back(name.string());
        }
    }
    ~Rig() {
        std::error_code ignored;
        fs::remove_all(root, ignored);
    }
    std::string Data() const { return root.string() + "/"; }
    std::string Socket() const { return Data() + "mpv.sock"; }
};

struct LoadFigures {
    double firstPlaying = 0;
    double wholeList = 0;
    double longestGap = 0;
};

// Polls, on a connection of its own, until mpv plays the first song of the list.
class FirstSongWatch {
public:
    FirstSongWatch(std::string socket, std::string firstSong, Clock::time_point start)
        : m_thread([this, socket = std::move(socket), firstSong = std::move(firstSong), start] {
              jk::UnixSocketChannel channel(socket);
              while (!m_stop) {
                  const auto time = Ask(channel, "playback-time");
                  if (time && time->Ok() && time->data.type == jk::MpvData::Type::Number) {
                      const auto path = Ask(channel, "path");
                      if (path && path->data.text == firstSong) {
                          m_ms = Ms(Clock::now() - start);
                          return;
                      }
                  }
                  std::this_thread::sleep_for(std::chrono::microseconds(500));
              }
          }) {}
    ~FirstSongWatch() {
        m_stop = true;
        m_thread.join();
    }
    // Waits for the first song; its time from the start, or -1.
    double Wait() {
        WaitFor([this] { return m_ms.load() >= 0; }, std::chrono::seconds(20));
        return m_ms;
    }

private:
    std::atomic<bool> m_stop{false};
    std::atomic<double> m_ms{-1};
    std::thread m_thread;
};

double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}

double Percentile99(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[std::min(values.size() - 1, values.size() * 99 / 100)];
}

LoadFigures MessageRoad(const Rig& rig, jk::PlayerBridge& bridge) {
    jk::PlaySettings settings{.LoadMode = 1, .HighLoad = 200, .HighLoadMode = 1};
    LoadFigures figures;
    Clock::time_point last;
    jk::PlayFront front;
    front.progress = [&](std::int64_t, std::int64_t) {
        const Clock::time_point now = Clock::now();
        figures.longestGap = std::max(figures.longestGap, Ms(now - last));
        last = now;
        return true;
    };
    const Clock::time_point start = Clock::now();
    FirstSongWatch watch(rig.Socket(), rig.songs[0], start);
    last = start;
    const jk::RunPlaylistResult result = jk::RunPlaylist(rig.songs, false, settings, bridge, front);
    figures.wholeList = Ms(Clock::now() - start);
    figures.firstPlaying = watch.Wait();
    if (result.road != jk::PlayRoad::Messages || result.sent != rig.songs.size()) {
        std::printf("  (the message road did not take the list: %s)\n", result.error.c_str());
    }
    return figures;
}

LoadFigures CommandLineRoad(const Rig& rig, jk::PlayerBridge& bridge) {
    jk::PlaySettings settings{.LoadMode = 1, .HighLoad = 200, .HighLoadMode = 1};
    LoadFigures figures;
    const Clock::time_point start = Clock::now();
    FirstSongWatch watch(rig.Socket(), rig.songs[0], start);
    jk::RunPlaylist(rig.songs, false, settings, bridge, {});
    figures.firstPlaying = watch.Wait();
    jk::UnixSocketChannel channel(rig.Socket());
    WaitFor(
        [&] {
            const auto count = Ask(channel, "playlist-count");
            return count && count->Ok() &&
                   count->data.number >= static_cast<double>(rig.songs.size());
        },
        std::chrono::seconds(20));
    figures.wholeList = Ms(Clock::now() - start);
    return figures;
}

void RoundTrips(const char* label, jk::PlayerBridge& bridge) {
    for (const jk::PlayerCommand command : {jk::PlayerCommand::Pause, jk::PlayerCommand::Next}) {
        std::vector<double> times;
        for (int i = 0; i < 200; ++i) {
            const Clock::time_point start = Clock::now();
            bridge.Command(command, start);
            times.push_back(Ms(Clock::now() - start));
        }
        std::printf("  %-5s %-5s  median %7.3f ms   99th percentile %7.3f ms\n", label,
                    command == jk::PlayerCommand::Pause ? "pause" : "next", Median(times),
                    Percentile99(times));
    }
}

void MpvPart(const std::string& realMpv, std::size_t count) {
    const Rig rig(count, realMpv, {});
    jk::SystemPlayerPlatform platform;
    jk::PlayerBridge bridge(platform);
    bridge.Aim({jk::kPlayerMpv, rig.mpv, "", rig.Data()});

    std::printf("Playing a list of %zu songs (median of 5 runs each, mpv --ao=null):\n", count);
    std::vector<double> first;
    std::vector<double> whole;
    std::vector<double> gap;
    bridge.StartPlayer();
    WaitFor([&] { return bridge.Running(); }, std::chrono::seconds(10));
    const pid_t idle = PidOf(rig.Socket());
    for (int run = 0; run < 5; ++run) {
        const LoadFigures figures = MessageRoad(rig, bridge);
        first.push_back(figures.firstPlaying);
        whole.push_back(figures.wholeList);
        gap.push_back(figures.longestGap);
        bridge.Command(jk::PlayerCommand::Stop, Clock::now());
    }
    std::printf(
        "  message road (mpv running):  first song playing %7.1f ms, whole list in mpv "
        "%7.1f ms, longest gap between progress calls %5.1f ms\n",
        Median(first), Median(whole), Median(gap));
    jk::RunPlaylist(rig.songs, false, {.LoadMode = 1, .HighLoad = 200, .HighLoadMode = 1}, bridge,
                    {});
    RoundTrips("mpv", bridge);
    End(idle);
    WaitFor([&] { return !bridge.Running(); }, std::chrono::seconds(5));

    first.clear();
    whole.clear();
    for (int run = 0; run < 5; ++run) {
        const LoadFigures figures = CommandLineRoad(rig, bridge);
        first.push_back(figures.firstPlaying);
        whole.push_back(figures.wholeList);
        End(PidOf(rig.Socket()));
        WaitFor([&] { return !bridge.Running(); }, std::chrono::seconds(5));
    }
    std::printf(
        "  command-line road (mpv started with templist.m3u): first song playing %7.1f "
        "ms, whole list in mpv %7.1f ms\n",
        Median(first), Median(whole));
}

void MprisPart(const std::string& realMpv, const std::string& plugIn) {
    const Rig rig(300, realMpv, plugIn);
    jk::SystemPlayerPlatform platform;
    jk::PlayerBridge bridge(platform);
    bridge.Aim(jk::PlayerTargetFor(rig.mpv, "mpv", 0, rig.Data()));
    jk::RunPlaylist(rig.songs, false, {}, bridge, {});
    WaitFor([&] { return PidOf(rig.Socket()) > 0 && bridge.Running(); }, std::chrono::seconds(10));
    const pid_t pid = PidOf(rig.Socket());
    RoundTrips("MPRIS", bridge);
    End(pid);
}

}  // namespace

int main(int argc, char** argv) {
    const std::size_t count = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 10000;
    const std::string realMpv = jk::FindExecutableOnPath("mpv");
    if (realMpv.empty()) {
        std::printf("mpv is not installed: nothing to time\n");
        return 0;
    }
    if (std::getenv("DBUS_SESSION_BUS_ADDRESS") == nullptr &&
        std::getenv("JK_BENCH_BUS") == nullptr &&
        !jk::FindExecutableOnPath("dbus-run-session").empty()) {
        ::setenv("JK_BENCH_BUS", "1", 1);
        std::vector<char*> again = {const_cast<char*>("dbus-run-session"), const_cast<char*>("--"),
                                    argv[0]};
        for (int i = 1; i < argc; ++i) {
            again.push_back(argv[i]);
        }
        again.push_back(nullptr);
        ::execvp("dbus-run-session", again.data());
    }
    MpvPart(realMpv, std::max<std::size_t>(count, 2));
    std::string plugIn;
    for (const char* path : {"/usr/lib/x86_64-linux-gnu/mpv-mpris/mpris.so",
                             "/usr/lib/mpv-mpris/mpris.so", "/etc/mpv/scripts/mpris.so"}) {
        if (fs::exists(path)) {
            plugIn = path;
            break;
        }
    }
    if (plugIn.empty() || std::getenv("DBUS_SESSION_BUS_ADDRESS") == nullptr) {
        std::printf("mpv's MPRIS plug-in or a session bus is missing: no MPRIS figures\n");
        return 0;
    }
    std::printf("Round trips to mpv as an MPRIS player (org.mpris.MediaPlayer2.mpv):\n");
    MprisPart(realMpv, plugIn);
    return 0;
}
