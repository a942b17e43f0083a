#pragma once

// The main window's title, which tells the open list's name and whether it has changed.

#include <string>
#include <string_view>

namespace jk {

// "name - Ostrel Jukarra 2.62", "Untitled" for no name, a "*" behind the name when unsaved.
std::string WindowTitle(std::string_view currentList, bool playlistSaved);

}  // namespace jk
