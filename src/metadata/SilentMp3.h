#pragma once

// Playable MP3 files of silence: one fixed 418-byte frame (an MPEG-1 Layer III header at
// 128 kbit/s and 44100 Hz, silent side information, 0xFF filler) repeated, and a tag.

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "util/FileIo.h"

namespace jk {

inline constexpr std::size_t kSilentFrameBytes = 418;
// "silent.mp3" holds this many frames: about one second of silence (16,302 bytes and the
// 128-byte tag).
inline constexpr std::size_t kSilentMp3Frames = 39;

const std::array<std::uint8_t, kSilentFrameBytes>& SilentFrame();

// Writes folder + the trimmed size text + "KB.mp3": one frame, then blocks of frames until the
// file holds at least the text's numeric value times 1024 bytes (tested before each block), then
// the tag. An existing file of that name is replaced. `madePath` receives the file's path.
IoResult MakeSilentFile(const std::string& folder, std::string_view sizeText,
                        std::string* madePath = nullptr);

// Writes "silent.mp3" in the folder.
IoResult MakeSilentMP3(const std::string& folder);
// The same, lasting at least `seconds` (1 to 3600; values outside are brought inside): the
// spacer between the songs of a list, as long as the delay asked for.
IoResult MakeSilentMP3(const std::string& folder, std::int32_t seconds);

// The frames that play for at least `seconds` (1152 samples at 44100 Hz each).
std::size_t SilentFramesFor(std::int32_t seconds);

}  // namespace jk
