#pragma once

// The desktop's message boxes for the core's messages and questions: the title and text as the
// core words them, the icon of the message's kind, and the buttons the question offers.

#include <QMessageBox>

#include "util/UserMessage.h"

namespace jk {

// The desktop's icon for a message's kind (none for MessageIcon::None).
QMessageBox::Icon BoxIcon(MessageIcon icon);

// Shows `message` with "OK" over `parent` and waits for it to close.
void ShowMessageBox(QWidget* parent, const UserMessage& message, QMessageBox::Icon icon);

// Asks `question` with `buttons` and returns the one pressed (the escape answer when the box is
// closed). `defaultButton` is what Enter presses; NoButton leaves the choice to Qt.
QMessageBox::StandardButton AskInBox(QWidget* parent, const UserMessage& question,
                                     QMessageBox::Icon icon, QMessageBox::StandardButtons buttons,
                                     QMessageBox::StandardButton defaultButton);

// Yes, No or Cancel: Yes is the default and Escape cancels.
SaveAnswer AskYesNoCancel(QWidget* parent, const UserMessage& question, QMessageBox::Icon icon);

}  // namespace jk
