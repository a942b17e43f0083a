#pragma once

// The Setup Browser's controls as widgets, built page by page from the control table: check
// boxes, number boxes, lists, option buttons and the player list, each named as its control.
// It moves values between the widgets and a SetupForm and nothing else; what the values mean
// is the form's business.

#include <functional>
#include <map>
#include <string>

#include <QString>

#include "setup/SetupForm.h"
#include "setup/SetupPages.h"

class QCheckBox;
class QComboBox;
class QFormLayout;
class QHBoxLayout;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QSpinBox;
class QWidget;

namespace jk {

class SetupControlWidgets {
public:
    // Called whenever a check box changes, so that its dependents follow.
    std::function<void()> onCheckToggled;

    // The page's controls in a widget of their own, named as the page's frame.
    QWidget* BuildPage(const SetupPage& page);

    void Fill(const SetupForm& form);
    // The form as the widgets stand.
    SetupForm Read() const;
    // Enables each control as ControlEnabled says for `form`.
    void ApplyEnabled(const SetupForm& form);

    // "Browse..." of the player list.
    QPushButton* BrowseButton() const { return m_browse; }
    QComboBox* PlayerList() const { return m_players; }

private:
    struct Widgets {
        const SetupControl* control = nullptr;
        QCheckBox* check = nullptr;
        QSpinBox* number = nullptr;
        QLineEdit* text = nullptr;
        QComboBox* list = nullptr;
        QRadioButton* options[2] = {nullptr, nullptr};
        QWidget* label = nullptr;     // the words before it, enabled with it
        QWidget* trailing = nullptr;  // the words behind it
    };

    Widgets MakeWidgets(const SetupControl& control, QWidget* parent);
    // The row of a control: the words before it in the label column, the rest in the field.
    void AddRow(QFormLayout& form, Widgets& widgets, QHBoxLayout*& lastRow);

    std::map<std::string, Widgets, std::less<>> m_widgets;
    QComboBox* m_players = nullptr;
    QPushButton* m_browse = nullptr;
};

// A caption for a button or check box: "&" stands for itself, not for an access key.
QString LiteralCaption(std::string_view text);

}  // namespace jk
