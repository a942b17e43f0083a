#include <atomic>
#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "platform/ProgramStart.h"
#include "platform/SessionMprisBus.h"
#include "platform/UnixSocketChannel.h"
#include "support/TempFolder.h"

namespace jk {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

// A listening socket at `path` whose peer, once accepted, is handed to `serve` on a thread of
// its own, joined when the server goes.
class SocketServer {
public:
    SocketServer(const std::string& path, std::function<void(int peer)> serve) {
        m_fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path.copy(address.sun_path, sizeof address.sun_path - 1);
        EXPECT_EQ(::bind(m_fd, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        EXPECT_EQ(::listen(m_fd, 4), 0);
        m_thread = std::thread([this, serve = std::move(serve)] {
            const int peer = ::accept(m_fd, nullptr, nullptr);
            if (peer >= 0) {
                serve(peer);
                ::close(peer);
            }
        });
    }
    ~SocketServer() {
        ::shutdown(m_fd, SHUT_RDWR);
        m_thread.join();
        ::close(m_fd);
    }

private:
    int m_fd = -1;
    std::thread m_thread;
};

void WriteAll(int fd, std::string_view text) {
    while (!text.empty()) {
        const ssize_t sent = ::send(fd, text.data(), text.size(), MSG_NOSIGNAL);
        if (sent <= 0) {
            return;
        }
        text.remove_prefix(static_cast<std::size_t>(sent));
    }
}

std::string ReadLine(int fd) {
    std::string line;
    char c = 0;
    while (::recv(fd, &c, 1, 0) == 1 && c != '\n') {
        line.push_back(c);
    }
    return line;
}

TEST(UnixSocketChannel, NobodyListeningIsARefusal) {
    test::TempFolder folder;
    UnixSocketChannel absent(folder.File("none.sock"));
    EXPECT_FALSE(absent.Connect());
    // A socket file left by a player that was killed.
    const std::string stale = folder.File("stale.sock");
    {
        SocketServer server(stale, [](int) {});
    }
    UnixSocketChannel channel(stale);
    EXPECT_FALSE(channel.Connect());
    EXPECT_EQ(channel.Exchange(
                  "x\n", [](std::string_view) { return true; }, 100, 100),
              ExchangeResult::Closed);
    UnixSocketChannel tooLong("/" + std::string(200, 'x'));
    EXPECT_FALSE(tooLong.Connect());
}

TEST(UnixSocketChannel, LinesComeBackWhateverPiecesTheyArriveIn) {
    test::TempFolder folder;
    const std::string path = folder.File("mpv.sock");
    SocketServer server(path, [](int peer) {
        EXPECT_EQ(ReadLine(peer), "one");
        EXPECT_EQ(ReadLine(peer), "two");
        WriteAll(peer, "{\"event\":\"x\"}\r\nfir");
        std::this_thread::sleep_for(20ms);
        WriteAll(peer, "st\nsecond\nlate\n");
        ReadLine(peer);  // holds the connection until the client goes
    });
    UnixSocketChannel channel(path);
    ASSERT_TRUE(channel.Connect());
    std::vector<std::string> lines;
    const auto result = channel.Exchange(
        "one\ntwo\n",
        [&lines](std::string_view line) {
            lines.emplace_back(line);
            return line == "second";
        },
        2000, 5000);
    EXPECT_EQ(result, ExchangeResult::Done);
    EXPECT_EQ(lines, (std::vector<std::string>{"{\"event\":\"x\"}", "first", "second"}));
    // The line after the awaited one is nobody's; the connection stays.
    EXPECT_TRUE(channel.Connect());
    channel.Disconnect();
}

TEST(UnixSocketChannel, APlayerThatHangsCostsOneTimeOut) {
    test::TempFolder folder;
    const std::string path = folder.File("mpv.sock");
    std::atomic<bool> release{false};
    SocketServer server(path, [&release](int) {
        while (!release) {
            std::this_thread::sleep_for(5ms);
        }
    });
    UnixSocketChannel channel(path);
    ASSERT_TRUE(channel.Connect());
    const auto start = Clock::now();
    EXPECT_EQ(channel.Exchange(
                  "{}\n", [](std::string_view) { return true; }, 200, 2000),
              ExchangeResult::TimedOut);
    const auto took = Clock::now() - start;
    EXPECT_GE(took, 150ms);
    EXPECT_LT(took, 1500ms);
    // A flood that the player never reads stops at the time-out too.
    const std::string flood(16 * 1024 * 1024, 'x');
    const auto floodStart = Clock::now();
    EXPECT_EQ(channel.Exchange(
                  flood, [](std::string_view) { return true; }, 200, 2000),
              ExchangeResult::TimedOut);
    EXPECT_LT(Clock::now() - floodStart, 2500ms);
    release = true;
}

TEST(UnixSocketChannel, APlayerThatGoesMidwayClosesTheExchange) {
    test::TempFolder folder;
    const std::string path = folder.File("mpv.sock");
    SocketServer server(path, [](int peer) { ReadLine(peer); });
    UnixSocketChannel channel(path);
    ASSERT_TRUE(channel.Connect());
    EXPECT_EQ(channel.Exchange(
                  "bye\n", [](std::string_view) { return false; }, 2000, 5000),
              ExchangeResult::Closed);
}

TEST(ProgramStart, ArgumentsArePassedAsTheyAreWithNoShell) {
    test::TempFolder folder;
    const std::string out = folder.File("args.txt");
    const std::string script =
        folder.Write("bin/player", "#!/bin/sh\nfor a in \"$@\"; do printf '[%s]' \"$a\"; done >'" +
                                       out + ".part'\nmv '" + out + ".part' '" + out + "'\n");
    ::chmod(script.c_str(), 0755);
    const std::vector<std::string> arguments = {"a b", "it's \"q\"", "$HOME", "new\nline", "ü;|&"};
    ASSERT_TRUE(StartDetachedProgram(script, arguments).ok);
    const auto end = Clock::now() + 10s;
    while (!std::filesystem::exists(out) && Clock::now() < end) {
        std::this_thread::sleep_for(20ms);
    }
    EXPECT_EQ(test::ReadBytes(out), "[a b][it's \"q\"][$HOME][new\nline][ü;|&]");

    const ProgramStart missing = StartDetachedProgram(folder.File("no/such/player"), {});
    EXPECT_FALSE(missing.ok);
    EXPECT_NE(missing.error.find("no such program"), std::string::npos);
    EXPECT_FALSE(StartDetachedProgram(folder.File("args.txt"), {}).ok);  // not executable
    EXPECT_TRUE(ProgramIsThere("sh"));
    EXPECT_FALSE(ProgramIsThere("no-such-player-anywhere"));
    EXPECT_FALSE(ProgramIsThere(""));
}

TEST(SessionMprisBus, WithoutABusEveryCallFailsAtOnce) {
    ::setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus", 1);
    const auto start = Clock::now();
    const auto bus = OpenSessionMprisBus(500);
    EXPECT_TRUE(bus->ListNames().empty());
    EXPECT_FALSE(bus->CallPlayer("org.mpris.MediaPlayer2.vlc", "Play"));
    EXPECT_FALSE(bus->PlayerState("org.mpris.MediaPlayer2.vlc"));
    EXPECT_FALSE(bus->SetPosition("org.mpris.MediaPlayer2.vlc", "not a path", 0));
    EXPECT_LT(Clock::now() - start, 2s);
}

}  // namespace
}  // namespace jk
