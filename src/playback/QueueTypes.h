#pragma once

// RotateQuad: four texts kept as a most-recently-used list (the four-entry histories of the
// wizards). QueuePath, its fifteen-entry kin for paths, lives with the recent lists.

#include <array>
#include <string>
#include <string_view>

namespace jk {

using QuadList = std::array<std::string, 4>;

// `newest` goes to the front. When it equals one of the four, compared lower-cased, that one
// leaves its place and those before it move down one; when it equals none, the last drops out.
QuadList RotateQuad(std::string_view newest, const QuadList& current);

}  // namespace jk
