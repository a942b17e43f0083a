#pragma once

// The remote commands of the main window, and which of them each player can carry out: the
// window shows those and hides the rest (UpdatePlayerMode, SetPlayerMode).

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace jk {

enum class PlayerCommand : std::uint8_t {
    Play,
    Pause,
    Stop,
    Previous,
    Next,
    SkipBack,
    SkipAhead,
    VolumeDown,
    VolumeUp,
    Fade,
    Equalizer,
    Selector,
    PlugInProperties,
    PlugInRun,
    Minimize,
    Restore,
    Close,
    Count
};

inline constexpr std::size_t kPlayerCommandCount = static_cast<std::size_t>(PlayerCommand::Count);

class PlayerCommandSet {
public:
    bool Has(PlayerCommand command) const { return m_bits.test(Index(command)); }
    PlayerCommandSet& Add(PlayerCommand command) {
        m_bits.set(Index(command));
        return *this;
    }
    PlayerCommandSet& Remove(PlayerCommand command) {
        m_bits.reset(Index(command));
        return *this;
    }
    bool Empty() const { return m_bits.none(); }
    friend bool operator==(const PlayerCommandSet&, const PlayerCommandSet&) = default;

private:
    static std::size_t Index(PlayerCommand command) { return static_cast<std::size_t>(command); }
    std::bitset<kPlayerCommandCount> m_bits;
};

// What a player says it can do. Window players and mpv can do all their table holds; an MPRIS
// player tells by its Can... properties.
struct PlayerAbilities {
    bool canPlay = true;
    bool canPause = true;
    bool canGoNext = true;
    bool canGoPrevious = true;
    bool canSeek = true;
    bool canControl = true;  // the volume can be set
    bool canQuit = true;
    bool canRaise = true;
    bool hasTrackList = false;
};

// The commands shown for a kind: Winamp (2) all; the other window players (1, 3, 4, 5) the
// transport and the window commands, not the Winamp-only ones; mpv (6) all but the plug-in,
// equalizer and window commands, which it has no counterpart for (Close quits it); an MPRIS
// player (7) what its abilities allow; any other kind none.
PlayerCommandSet ShownPlayerCommands(std::int16_t kind, const PlayerAbilities& abilities);

// The volume panel of the status bar is shown for the players that report their volume.
bool ShowsVolumePanel(std::int16_t kind);

// What UpdatePlayerMode gives the window: the player's kind, the remote commands to show, and
// whether the volume panel shows.
struct PlayerMode {
    std::int16_t kind = 0;
    PlayerCommandSet shown;
    bool volumePanel = false;

    friend bool operator==(const PlayerMode&, const PlayerMode&) = default;
};

// The name of a command as the command-line tool's "remote" takes it ("play", "vol-up", ...).
std::string_view RemoteCommandName(PlayerCommand command);
// The command of a name; PlayerCommand::Count when there is none.
PlayerCommand RemoteCommandNamed(std::string_view name);

}  // namespace jk
