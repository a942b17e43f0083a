#include "app/PlayerSession.h"

#include "app/Session.h"
#include "catalogue/InsertDisc.h"
#include "playback/PlayLists.h"
#include "playback/PlayerKind.h"
#include "playback/Shuffler.h"
#include "util/FileIo.h"

namespace jk {

namespace {

// The play's front asks; a front that cannot ask shows the question and answers Cancel, or No,
// so the songs never silently fail to play.
class InsertDiscQuestionsToFront final : public InsertDiscQuestions {
public:
    explicit InsertDiscQuestionsToFront(const PlayFront& front) : m_front(front) {}
    RetryAnswer AskRetryCancel(const UserMessage& question) override {
        if (m_front.askRetry) {
            return m_front.askRetry(question) ? RetryAnswer::Retry : RetryAnswer::Cancel;
        }
        Tell(question);
        return RetryAnswer::Cancel;
    }
    bool AskYesNo(const UserMessage& question) override {
        if (m_front.askYesNo) {
            return m_front.askYesNo(question);
        }
        Tell(question);
        return false;
    }

private:
    void Tell(const UserMessage& question) const {
        if (m_front.showMessage) {
            m_front.showMessage(question);
        }
    }
    const PlayFront& m_front;
};

RunPlaylistResult Run(std::vector<std::string> songs, bool queue, Session& session,
                      PlayerBridge& bridge, const PlayFront& front) {
    if (!songs.empty() && session.Settings.DiscIdentity != 0 && !session.Virtual.Volumes.empty()) {
        InsertDiscQuestionsToFront questions(front);
        const PlayCheckSources sources{session.DiscLister, &FileExists};
        PlayCheck check = CheckDiscsBeforePlay(songs, session.Virtual, sources, questions);
        if (!check.play) {
            return {};
        }
        songs = std::move(check.paths);
    }
    return RunPlaylist(std::move(songs), queue, PlaySettingsOf(session.Settings), bridge, front);
}

}  // namespace

PlaySettings PlaySettingsOf(const Settings& settings) {
    return {settings.LoadMode, settings.HighLoad, settings.HighLoadMode,
            settings.Spacer,   settings.Delay,    settings.AutoMinimize};
}

IntroSettings IntroSettingsOf(const Settings& settings) {
    return {settings.IntroPlay, settings.IntroSkip, settings.IntroLength};
}

void SetPlayerMode(Session& session, PlayerBridge& bridge) {
    const PlayerTarget target =
        PlayerTargetFor(CurrentPlayerPath(session.Settings), session.Settings.MprisPlayer,
                        session.PlayerKind, session.AppPath);
    session.PlayerKind = target.kind;
    bridge.Aim(target);
}

PlayerMode UpdatePlayerMode(PlayerBridge& bridge) {
    PlayerMode mode;
    mode.kind = bridge.Kind();
    // Only an MPRIS player is asked: the others can do what their table holds.
    const PlayerAbilities abilities =
        mode.kind == kPlayerMpris ? bridge.Transport().Abilities() : PlayerAbilities{};
    mode.shown = ShownPlayerCommands(mode.kind, abilities);
    mode.volumePanel = ShowsVolumePanel(mode.kind);
    return mode;
}

RunPlaylistResult PlayAllRows(const RowList& pane, Session& session, PlayerBridge& bridge,
                              const PlayFront& front) {
    return Run(AllRowPaths(pane), false, session, bridge, front);
}

RunPlaylistResult PlaySelectedRows(const RowList& pane, Session& session, PlayerBridge& bridge,
                                   const PlayFront& front) {
    return Run(SelectedRowPaths(pane), false, session, bridge, front);
}

RunPlaylistResult WrapPlay(const RowList& pane, Session& session, PlayerBridge& bridge,
                           const PlayFront& front) {
    return Run(WrappedRowPaths(pane), false, session, bridge, front);
}

RunPlaylistResult JukarraPlay(const RowList& pane, Session& session, PlayerBridge& bridge,
                              const PlayFront& front, ShuffleRandom& random) {
    const bool enhanced = UseEnhancedShuffle(session.Settings.QuickShuffle);
    return Run(ShuffledRowPaths(pane, enhanced, random), false, session, bridge, front);
}

RunPlaylistResult QueueRows(const RowList& pane, bool selectedOnly, Session& session,
                            PlayerBridge& bridge, const PlayFront& front) {
    return Run(selectedOnly ? SelectedRowPaths(pane) : AllRowPaths(pane), true, session, bridge,
               front);
}

IntroAction IntroPlayTimer(const Session& session, PlayerBridge& bridge, IntroPlay& intro) {
    return intro.Tick(IntroSettingsOf(session.Settings), bridge.Transport());
}

StatusPanelUpdate StatusTimer(const Session& session, PlayerBridge& bridge, StatusPanels& panels) {
    if (!ShowsVolumePanel(bridge.Kind()) || session.Settings.ShowCurrSong == 0 ||
        !bridge.Running()) {
        return {};
    }
    return panels.Update(bridge.Transport().Status(), session.Settings.TimeMode);
}

}  // namespace jk
