#include "playback/IntroPlay.h"

#include <chrono>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/playback/PlayerFakes.h"

namespace jk {
namespace {

using namespace std::chrono_literals;
using Events = std::vector<std::string>;

// A player that plays a list of songs of known lengths on a clock the test moves, going on to
// the next song at the end of one and stopping after the last. It writes down what it is told.
class SimulatedPlayer : public PlayerTransport {
public:
    SimulatedPlayer(test::FakeClock& clock, std::vector<std::int64_t> lengthsMs)
        : m_clock(clock), m_lengths(std::move(lengthsMs)), m_songStart(clock.Now()) {}

    bool knowsIndex = true;  // an MPRIS player without track list does not
    bool honestNext = true;  // CanGoNext is false at the last song
    Events events;

    bool Running() override { return true; }
    PlayerStatus Status() override {
        Settle();
        PlayerStatus status;
        if (m_index < 0) {
            return status;
        }
        status.state = PlayState::Playing;
        status.positionMs = PositionMs();
        status.lengthMs = m_lengths[static_cast<std::size_t>(m_index)];
        status.trackKey = "song" + std::to_string(m_index);
        status.canGoNext = !honestNext || m_index + 1 < static_cast<int>(m_lengths.size());
        return status;
    }
    std::int32_t ListIndex() override { return knowsIndex ? m_index : -1; }
    std::int32_t ListLength() override {
        return knowsIndex ? static_cast<std::int32_t>(m_lengths.size()) : -1;
    }
    void Next() override {
        Settle();
        events.push_back("next from " + std::to_string(m_index) + " at " +
                         std::to_string(PositionMs()));
        if (m_index + 1 < static_cast<int>(m_lengths.size())) {
            Start(m_index + 1);
        }
    }
    void Stop() override {
        events.push_back("stop");
        m_index = -1;
    }
    void SeekTo(std::int64_t ms) override {
        events.push_back("seek " + std::to_string(m_index) + " to " + std::to_string(ms));
        m_offset = ms;
        m_songStart = m_clock.Now();
    }
    bool Stopped() {
        Settle();
        return m_index < 0;
    }

private:
    std::int64_t PositionMs() const {
        return m_offset +
               std::chrono::duration_cast<std::chrono::milliseconds>(m_clock.Now() - m_songStart)
                   .count();
    }
    void Start(int index) {
        m_index = index;
        m_offset = 0;
        m_songStart = m_clock.Now();
    }
    // Songs that ended on their own give way to the next.
    void Settle() {
        while (m_index >= 0 && PositionMs() >= m_lengths[static_cast<std::size_t>(m_index)]) {
            const auto ended =
                m_songStart +
                std::chrono::milliseconds(m_lengths[static_cast<std::size_t>(m_index)] - m_offset);
            events.push_back("end of " + std::to_string(m_index));
            if (m_index + 1 >= static_cast<int>(m_lengths.size())) {
                m_index = -1;
                return;
            }
            Start(m_index + 1);
            m_songStart = ended;
        }
    }

    test::FakeClock& m_clock;
    std::vector<std::int64_t> m_lengths;
    int m_index = 0;
    std::int64_t m_offset = 0;
    std::chrono::steady_clock::time_point m_songStart;
};

// Ticks every 250 ms until the player stops or a minute has passed.
void RunTicks(IntroPlay& intro, const IntroSettings& settings, SimulatedPlayer& player,
              test::FakeClock& clock) {
    for (int tick = 0; tick < 240 && !player.Stopped(); ++tick) {
        intro.Tick(settings, player);
        clock.Advance(250ms);
    }
}

TEST(IntroPlay, PlaysAStretchOfEachSongAndStopsAfterTheLast) {
    test::FakeClock clock;
    // The middle song is shorter than the skip: it plays whole, from its start.
    SimulatedPlayer player(clock, {10000, 3000, 20000});
    IntroPlay intro;
    RunTicks(intro, {1, 5, 4}, player, clock);
    EXPECT_EQ(player.events, (Events{"seek 0 to 5000", "next from 0 at 9500", "end of 1",
                                     "seek 2 to 5000", "next from 2 at 9500", "stop"}));
}

TEST(IntroPlay, ASkipOfZeroNeverJumps) {
    test::FakeClock clock;
    SimulatedPlayer player(clock, {10000, 10000});
    IntroPlay intro;
    RunTicks(intro, {1, 0, 3}, player, clock);
    EXPECT_EQ(player.events, (Events{"next from 0 at 3500", "next from 1 at 3500", "stop"}));
}

TEST(IntroPlay, APlayerWithoutItsListIndexStopsWhenItCannotGoOn) {
    for (const bool honest : {true, false}) {
        test::FakeClock clock;
        SimulatedPlayer player(clock, {10000, 10000});
        player.knowsIndex = false;
        player.honestNext = honest;
        IntroPlay intro;
        RunTicks(intro, {1, 2, 2}, player, clock);
        // A player that says it can go on from the last song is caught by the next tick,
        // which still finds that song past its stretch.
        const Events expected =
            honest ? Events{"seek 0 to 2000", "next from 0 at 4500", "seek 1 to 2000", "stop"}
                   : Events{"seek 0 to 2000", "next from 0 at 4500", "seek 1 to 2000",
                            "next from 1 at 4500", "stop"};
        EXPECT_EQ(player.events, expected) << honest;
    }
}

TEST(IntroPlay, MovesOnOnlyPastSkipPlusLength) {
    test::CallLog log;
    test::FakeTransport player(log);
    player.status.state = PlayState::Playing;
    player.status.lengthMs = 60000;
    IntroPlay intro;
    const IntroSettings settings{1, 5, 4};
    player.status.positionMs = 9499;  // rounds to 9: equal, not past
    EXPECT_EQ(intro.Tick(settings, player), IntroAction::Nothing);
    player.status.positionMs = 9500;
    EXPECT_EQ(intro.Tick(settings, player), IntroAction::MovedOn);
    EXPECT_EQ(log.calls, (std::vector<std::string>{"Next"}));

    // The settings are read on each tick.
    log.calls.clear();
    EXPECT_EQ(intro.Tick({1, 5, 30}, player), IntroAction::Nothing);
    player.status.positionMs = 4000;
    EXPECT_EQ(intro.Tick({1, 5, 30}, player), IntroAction::SkippedStart);
    player.status.lengthMs = 5000;  // a song of exactly the skip is left alone
    EXPECT_EQ(intro.Tick({1, 5, 30}, player), IntroAction::Nothing);
}

TEST(IntroPlay, ActsOnlyWhenOnAndPlaying) {
    test::CallLog log;
    test::FakeTransport player(log);
    player.status.state = PlayState::Playing;
    player.status.positionMs = 100000;
    IntroPlay intro;
    for (const std::int16_t on : {0, -1, 2}) {
        EXPECT_EQ(intro.Tick({on, 5, 4}, player), IntroAction::Nothing) << on;
    }
    player.status.state = PlayState::Paused;
    EXPECT_EQ(intro.Tick({1, 5, 4}, player), IntroAction::Nothing);
    player.status.state = PlayState::Playing;
    player.running = false;
    EXPECT_EQ(intro.Tick({1, 5, 4}, player), IntroAction::Nothing);
    EXPECT_TRUE(log.calls.empty());
}

}  // namespace
}  // namespace jk
