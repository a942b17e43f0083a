#pragma once

// A silent MP3 at a path of the caller's choosing, made exactly as the Silent MP3 Wizard makes
// its "NNNKB.mp3" in the data folder: the same frames, size rule and tag.

#include <string>
#include <string_view>

#include "util/FileIo.h"

namespace jk {

// Writes at `path` a file of one frame, then frames until it holds at least the numeric value
// of `sizeText` times 1024 bytes, then the wizard's tag. An existing file there is replaced.
// The file is made in a private folder beside `path` and renamed into place, so `path` never
// holds a file cut short.
IoResult MakeSilentFileAt(const std::string& path, std::string_view sizeText);

}  // namespace jk
