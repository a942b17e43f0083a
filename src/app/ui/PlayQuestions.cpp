#include "app/ui/PlayQuestions.h"

#include <QPointer>

#include "playback/RunPlaylist.h"
#include "ui/common/MessageBoxes.h"

namespace jk {

namespace {

bool Ask(QWidget* parent, const UserMessage& question, QMessageBox::StandardButtons buttons,
         QMessageBox::StandardButton yes) {
    return AskInBox(parent, question, QMessageBox::Question, buttons, yes) == yes;
}

}  // namespace

void AskInBoxes(PlayFront& front, QWidget* parent) {
    const QPointer<QWidget> owner(parent);
    front.askRetry = [owner](const UserMessage& question) {
        return Ask(owner, question, QMessageBox::Retry | QMessageBox::Cancel, QMessageBox::Retry);
    };
    front.askYesNo = [owner](const UserMessage& question) {
        return Ask(owner, question, QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes);
    };
}

}  // namespace jk
