#include "app/Messages.h"

#include <chrono>

namespace jk {

namespace {

constexpr std::int64_t kDaysBeforeOffer = 45;

}  // namespace

UserMessage WelcomeMessage() {
    return {
        "This must be your first time running Jukarra.  After this message, you will be taken "
        "to the Setup Browser to configure your MP3 player and other preferences.",
        "Welcome!", MessageIcon::Information};
}

UserMessage IniSaveFailedMessage() {
    return {"INI file could not be saved successfully.", "Sorry...", MessageIcon::None};
}

UserMessage ErrorBox() {
    return {
        "Sorry, this tool requires you to have at least one file in the Playlist to "
        "function.\n\n"
        "To add files to the playlist, right-click on selected items in the Files pane and Add "
        "them.\n"
        "You can use the Folder menu to add groups of files.  Or simply drag & drop them into "
        "the Playlist.",
        "You forgot something...", MessageIcon::Warning};
}

std::int64_t DaysSinceBuild(int year, unsigned month, unsigned day) {
    using namespace std::chrono;
    const sys_days build = year_month_day{std::chrono::year{2000}, February, std::chrono::day{26}};
    const sys_days date =
        year_month_day{std::chrono::year{year}, std::chrono::month{month}, std::chrono::day{day}};
    return (date - build).count();
}

std::optional<std::string> VersionCheckText(int year, unsigned month, unsigned day) {
    const std::int64_t age = DaysSinceBuild(year, month, day);
    if (age <= kDaysBeforeOffer) {
        return std::nullopt;
    }
    return "This version of Jukarra is  " + std::to_string(age) +
           " days old.\nWould you like to check for a new version?";
}

}  // namespace jk
