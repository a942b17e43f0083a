#include "playback/PlaylistCommands.h"

#include "playback/ListWriting.h"
#include "playback/RecentLists.h"
#include "util/PathHelpers.h"

namespace jk {

void NewList(PlaylistState& state) {
    state.Rows.clear();
    state.CurrentList.clear();
    state.PlaylistSaved = true;
}

ListReadResult OpenList(PlaylistState& state, const std::string& path, const SongSource& songs,
                        const ListSettings& settings) {
    if (path.empty()) {
        return {};
    }
    state.CurrentList.clear();
    ListReadResult result = OpenListNow(path, state.Rows, songs, settings.HideGhosts);
    if (!result.Ok()) {
        state.PlaylistSaved = false;
        return result;
    }
    state.CurrentList = std::string(BareName(path));
    state.PlaylistSaved = true;
    LastQueue(state.RecentLists, path);
    return result;
}

ListReadResult OpenRecentList(PlaylistState& state, std::size_t menuIndex, const SongSource& songs,
                              const ListSettings& settings) {
    if (menuIndex >= state.RecentLists.size()) {
        return {};
    }
    const std::string path = state.RecentLists[menuIndex];
    return OpenList(state, path, songs, settings);
}

ListReadResult AppendToList(PlaylistState& state, const std::string& path, const SongSource& songs,
                            const ListSettings& settings) {
    if (path.empty()) {
        return {};
    }
    ListReadResult result = AppendListNow(path, state.Rows, songs, settings.HideGhosts);
    state.PlaylistSaved = false;
    return result;
}

SaveResult SaveList(PlaylistState& state, const ListSettings& settings,
                    const std::function<std::string()>& chooseSavePath) {
    if (state.CurrentList.empty()) {
        return SaveAsList(state, chooseSavePath ? chooseSavePath() : std::string(), settings);
    }
    if (state.PlaylistSaved) {
        return {SaveOutcome::Unchanged, {}};
    }
    const IoResult written = WriteListFile(state.RecentLists[0], state.Rows, settings);
    if (!written.ok) {
        return {SaveOutcome::Failed, written.error};
    }
    state.PlaylistSaved = true;
    return {SaveOutcome::Saved, {}};
}

SaveResult SaveAsList(PlaylistState& state, const std::string& path, const ListSettings& settings) {
    if (path.empty()) {
        return {SaveOutcome::Cancelled, {}};
    }
    const IoResult written = WriteListFile(path, state.Rows, settings);
    if (!written.ok) {
        return {SaveOutcome::Failed, written.error};
    }
    LastQueue(state.RecentLists, path);
    state.CurrentList = std::string(BareName(path));
    state.PlaylistSaved = true;
    return {SaveOutcome::Saved, {}};
}

void RemoveFromList(PlaylistState& state) {
    if (state.Rows.empty()) {
        return;
    }
    state.PlaylistSaved = false;
    std::erase_if(state.Rows, [](const ListRow& row) { return row.Selected(); });
}

bool NothingToLose(const PlaylistState& state) {
    return state.PlaylistSaved || (state.CurrentList.empty() && state.Rows.empty());
}

UserMessage SaveQuestion() {
    return {"Playlist not saved.  Would you like to save it?", "Save list?", MessageIcon::Question};
}

bool ReadyToDropList(PlaylistState& state, const ListSettings& settings,
                     const DropListFrontEnd& frontEnd) {
    if (NothingToLose(state)) {
        return true;
    }
    const SaveAnswer answer = frontEnd.ask ? frontEnd.ask(SaveQuestion()) : SaveAnswer::Cancel;
    if (answer == SaveAnswer::Cancel) {
        return false;
    }
    if (answer == SaveAnswer::No) {
        return true;
    }
    const SaveResult saved = SaveList(state, settings, frontEnd.chooseSavePath);
    if (saved.outcome == SaveOutcome::Failed) {
        if (frontEnd.tell) {
            frontEnd.tell(SaveFailedMessage(), saved.reason);
        }
        return false;
    }
    return true;
}

}  // namespace jk
