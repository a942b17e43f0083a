#pragma once

// The main window's title, which tells the open list's name and whether it has changed.

#include <string>
#include <string_view>

namespace jk {

// "name - CAPTION" ("name - Ostrel Jukarra 2.62"), "Untitled" for no name, a "*" behind the name
// when unsaved. The program hands in its own caption, so lists need not know which program
// shows them.
std::string WindowTitle(std::string_view currentList, bool playlistSaved,
                        std::string_view productCaption);

}  // namespace jk
