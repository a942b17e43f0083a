#include "ui/common/MessageBoxes.h"

namespace jk {

QMessageBox::Icon BoxIcon(MessageIcon icon) {
    switch (icon) {
        case MessageIcon::Information:
            return QMessageBox::Information;
        case MessageIcon::Question:
            return QMessageBox::Question;
        case MessageIcon::Warning:
            return QMessageBox::Warning;
        case MessageIcon::Critical:
            return QMessageBox::Critical;
        case MessageIcon::None:
            break;
    }
    return QMessageBox::NoIcon;
}

void ShowMessageBox(QWidget* parent, const UserMessage& message, QMessageBox::Icon icon) {
    QMessageBox box(icon, QString::fromStdString(message.title),
                    QString::fromStdString(message.text), QMessageBox::Ok, parent);
    box.exec();
}

QMessageBox::StandardButton AskInBox(QWidget* parent, const UserMessage& question,
                                     QMessageBox::Icon icon, QMessageBox::StandardButtons buttons,
                                     QMessageBox::StandardButton defaultButton) {
    QMessageBox box(icon, QString::fromStdString(question.title),
                    QString::fromStdString(question.text), buttons, parent);
    if (defaultButton != QMessageBox::NoButton) {
        box.setDefaultButton(defaultButton);
    }
    return static_cast<QMessageBox::StandardButton>(box.exec());
}

SaveAnswer AskYesNoCancel(QWidget* parent, const UserMessage& question, QMessageBox::Icon icon) {
    QMessageBox box(icon, QString::fromStdString(question.title),
                    QString::fromStdString(question.text),
                    QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, parent);
    box.setDefaultButton(QMessageBox::Yes);
    box.setEscapeButton(QMessageBox::Cancel);
    switch (box.exec()) {
        case QMessageBox::Yes:
            return SaveAnswer::Yes;
        case QMessageBox::No:
            return SaveAnswer::No;
        default:
            return SaveAnswer::Cancel;
    }
}

}  // namespace jk
