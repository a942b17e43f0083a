#pragma once

// What the tests against real players share: mpv found on the PATH and wrapped so that it plays
// into no sound device and reads no user configuration, songs of silence of known lengths,
// waits that always end, and the end of every player a test started, by its process id.

#include <chrono>
#include <csignal>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include <sys/stat.h>
#include <sys/wait.h>

#include "platform/ExecutableSearch.h"
#include "platform/UnixSocketChannel.h"
#include "playback/MpvProtocol.h"
#include "support/TempFolder.h"

namespace jk::test {

inline std::string RealMpv() {
    return FindExecutableOnPath("mpv");
}

// The MPRIS plug-in of mpv as Debian installs it; "" when it is not there.
inline std::string MprisPlugIn() {
    for (const char* path : {"/usr/lib/x86_64-linux-gnu/mpv-mpris/mpris.so",
                             "/usr/lib/mpv-mpris/mpris.so", "/etc/mpv/scripts/mpris.so"}) {
        struct stat status {};
        if (::stat(path, &status) == 0) {
            return path;
        }
    }
    return {};
}

// Polls `done` every 20 ms until it holds or `limit` has passed.
inline bool WaitFor(const std::function<bool()>& done,
                    std::chrono::milliseconds limit = std::chrono::seconds(10)) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!done()) {
        if (std::chrono::steady_clock::now() >= end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return true;
}

// Writes a song of silence that lasts `seconds`: MPEG-1 Layer III mono frames at 32 kbit/s and
// 48 kHz, 96 bytes each with no padding, holding nothing but a header, so that ten minutes
// take 2.4 MB. (The frame of silent.mp3 is one byte longer than its header says, which mpv's
// demuxer does not accept.)
inline std::string WriteSilentSong(const std::string& path, int seconds) {
    std::string frame(96, '\0');
    frame[0] = '\xFF';
    frame[1] = '\xFB';
    frame[2] = '\x14';
    frame[3] = '\xC4';
    const int frames = (seconds * 48000 + 1151) / 1152;
    std::string bytes;
    bytes.reserve(frame.size() * static_cast<std::size_t>(frames));
    for (int i = 0; i < frames; ++i) {
        bytes += frame;
    }
    WriteBytes(path, bytes);
    return path;
}

// True while the process runs (a process that ended but was not yet reaped does not).
inline bool ProcessRuns(pid_t pid) {
    if (::kill(pid, 0) != 0) {
        return false;
    }
    const std::string stat = ReadBytes("/proc/" + std::to_string(pid) + "/stat");
    const std::size_t close = stat.rfind(')');
    return close == std::string::npos || close + 2 >= stat.size() || stat[close + 2] != 'Z';
}

// A data folder with an "mpv" of its own in bin/: the real one, with no sound, no user
// configuration and, when asked, the MPRIS plug-in. Every mpv that answered on the folder's
// socket is ended when it goes.
class MpvFolder : public TempFolder {
public:
    explicit MpvFolder(bool withMpris = false) {
        std::string script = "#!/bin/sh\nexec '" + RealMpv() +
                             "' --no-config --ao=null --really-quiet --no-terminal";
        if (withMpris) {
            script += " '--script=" + MprisPlugIn() + "'";
        }
        script += " \"$@\"\n";
        Write("bin/mpv", script);
        ::chmod(File("bin/mpv").c_str(), 0755);
    }
    ~MpvFolder() {
        for (const pid_t pid : m_pids) {
            ::kill(pid, SIGTERM);
        }
        for (const pid_t pid : m_pids) {
            if (!WaitFor([pid] { return !ProcessRuns(pid); }, std::chrono::seconds(3))) {
                ::kill(pid, SIGKILL);
            }
        }
    }

    std::string Player() const { return File("bin/mpv"); }
    std::string Socket() const { return File("mpv.sock"); }

    // The process id of the mpv answering on the socket (0 when none does); remembered so
    // that it is ended with the folder.
    pid_t AnsweringPid() {
        UnixSocketChannel channel(Socket());
        if (!channel.Connect()) {
            return 0;
        }
        pid_t pid = 0;
        channel.Exchange(
            R"({"command":["get_property","pid"],"request_id":1})"
            "\n",
            [&pid](std::string_view line) {
                const auto reply = ParseMpvLine(line);
                if (reply && reply->requestId == 1 && reply->data.type == MpvData::Type::Number) {
                    pid = static_cast<pid_t>(reply->data.number);
                    return true;
                }
                return false;
            },
            1000, 2000);
        if (pid > 0) {
            m_pids.push_back(pid);
        }
        return pid;
    }

private:
    std::vector<pid_t> m_pids;
};

}  // namespace jk::test
