#pragma once

// Which player the program steers (PlayerKind) and how that is read from the player's path:
// the five Windows players keep their numbers, mpv is 6 and any MPRIS player 7. The words are
// sought in the lower-cased file name of the player, never in its folders: Linux folders carry
// user names, and "/home/nadia/bin/audacious" must not read as NAD.

#include <cstdint>
#include <string>
#include <string_view>

namespace jk {

inline constexpr std::int16_t kPlayerWinPlay3 = 1;
inline constexpr std::int16_t kPlayerWinamp = 2;
inline constexpr std::int16_t kPlayerNad = 3;
inline constexpr std::int16_t kPlayerSonique = 4;
inline constexpr std::int16_t kPlayerKJofol = 5;
inline constexpr std::int16_t kPlayerMpv = 6;
inline constexpr std::int16_t kPlayerMpris = 7;

// True for 1 to 7; any other kind finds no player and no command does anything.
bool IsKnownPlayerKind(std::int16_t kind);

// Kinds 1 to 5: players steered by window messages.
bool IsWindowPlayerKind(std::int16_t kind);

// The last component of the trimmed player path, lower-cased.
std::string PlayerFileName(std::string_view playerPath);

// SetPlayerMode's choice: a non-empty MprisPlayer gives 7 whatever the path says; else the first
// of "winamp", "winplay", "nad", "sonique", "kjofol", "mpv" and the known MPRIS players found in
// the player's file name; else `current`, unchanged.
std::int16_t PlayerKindFor(std::string_view playerPath, std::string_view mprisPlayer,
                           std::int16_t current);

// The name an MPRIS player is known by on the bus (the part after "org.mpris.MediaPlayer2."):
// MprisPlayer trimmed when it is not empty, else the known MPRIS player named by the file
// name; "" when neither names one.
std::string MprisNameFor(std::string_view playerPath, std::string_view mprisPlayer);

// UpdatePlayerMode's test: the player's file name holds "winamp".
bool IsWinampPath(std::string_view playerPath);
// ShowWinPlayIcon's test: the player's file name holds "winplay".
bool IsWinPlayPath(std::string_view playerPath);
// The player is mpv (its file name holds "mpv"): it is started ready to be steered over its
// socket, whichever kind steers it.
bool IsMpvPath(std::string_view playerPath);

// The name shown for a kind ("mpv", "MPRIS player", "Winamp", ...); "none" outside 1 to 7.
std::string_view PlayerKindName(std::int16_t kind);

}  // namespace jk
