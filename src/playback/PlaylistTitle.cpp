#include "playback/PlaylistTitle.h"

#include "app/Version.h"

namespace jk {

std::string WindowTitle(std::string_view currentList, bool playlistSaved) {
    const std::string_view name = currentList.empty() ? std::string_view("Untitled") : currentList;
    std::string title;
    title.reserve(name.size() + kProductCaption.size() + 4);
    title.append(name);
    if (!playlistSaved) {
        title.push_back('*');
    }
    title.append(" - ");
    title.append(kProductCaption);
    return title;
}

}  // namespace jk
