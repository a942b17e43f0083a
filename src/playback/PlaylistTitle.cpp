#include "playback/PlaylistTitle.h"

namespace jk {

std::string WindowTitle(std::string_view currentList, bool playlistSaved,
                        std::string_view productCaption) {
    const std::string_view name = currentList.empty() ? std::string_view("Untitled") : currentList;
    std::string title;
    title.reserve(name.size() + productCaption.size() + 4);
    title.append(name);
    if (!playlistSaved) {
        title.push_back('*');
    }
    title.append(" - ");
    title.append(productCaption);
    return title;
}

}  // namespace jk
