#include "app/PaneActions.h"

namespace jk {

PaneAction DoubleClickAction(std::int16_t value) {
    if (value < 0 || value > static_cast<std::int16_t>(PaneAction::Queue)) {
        return PaneAction::Nothing;
    }
    return static_cast<PaneAction>(value);
}

PaneAction DeleteKeyAction(std::int16_t value) {
    switch (value) {
        case 0:
            return PaneAction::RemoveFromList;
        case 1:
            return PaneAction::DeleteFile;
        case 2:
            return PaneAction::DeselectAll;
        default:
            return PaneAction::Nothing;
    }
}

PaneVisibility VisiblePanes(std::int16_t files, std::int16_t folders, std::int16_t playlist) {
    PaneVisibility shown{files == 1, folders == 1, playlist == 1};
    if (!shown.files && !shown.folders && !shown.playlist) {
        return {};
    }
    return shown;
}

bool DeleteEnabled(std::int16_t delMode) {
    return delMode != kDelModeDisabled;
}

bool DeleteAsks(std::int16_t delMode) {
    return delMode != kDelModeWithoutWarning;
}

UserMessage DeleteQuestion(std::size_t count, std::string_view firstName) {
    std::string text = count == 1 ? "Move \"" + std::string(firstName) + "\" to the trash?"
                                  : "Move these " + std::to_string(count) + " files to the trash?";
    text += "\n\nYou can restore them from the trash of your desktop.";
    return {text, "Delete files", MessageIcon::Question};
}

UserMessage FileFailuresMessage(std::string_view verb, std::size_t count,
                                std::string_view details) {
    std::string text =
        count == 1 ? "One file could not be " + std::string(verb) + "."
                   : std::to_string(count) + " files could not be " + std::string(verb) + ".";
    if (!details.empty()) {
        text += "\n\n" + std::string(details);
    }
    return {text, "Sorry...", MessageIcon::Warning};
}

}  // namespace jk
