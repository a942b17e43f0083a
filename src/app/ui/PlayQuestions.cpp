#include "app/ui/PlayQuestions.h"

#include <QMessageBox>
#include <QPointer>

#include "playback/RunPlaylist.h"

namespace jk {

namespace {

bool Ask(QWidget* parent, const UserMessage& question, QMessageBox::StandardButtons buttons,
         QMessageBox::StandardButton yes) {
    QMessageBox box(QMessageBox::Question, QString::fromStdString(question.title),
                    QString::fromStdString(question.text), buttons, parent);
    box.setDefaultButton(yes);
    return box.exec() == yes;
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
