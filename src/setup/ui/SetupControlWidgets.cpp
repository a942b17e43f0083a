#include "setup/ui/SetupControlWidgets.h"

#include <algorithm>
#include <limits>

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "app/SettingsTable.h"
#include "ui/common/QtText.h"
#include "util/Text.h"

namespace jk {

namespace {

std::string ToStd(const QString& text) {
    return text.toStdString();
}

// The largest number a box takes: what its key holds.
int NumberLimit(const SetupControl& control) {
    const SettingField* field = FindSetting(control.key).field;
    return field != nullptr && field->kind == SettingKind::Int32 ? std::numeric_limits<int>::max()
                                                                 : 32767;
}

// Adds `widget` to a row that ends in a stretch, ahead of the stretch.
void Append(QHBoxLayout& row, QWidget* widget) {
    row.insertWidget(std::max(0, row.count() - 1), widget);
}

QLabel* HelpLabel(std::string_view text) {
    auto* label = new QLabel(ToQString(text));
    label->setWordWrap(true);
    label->setObjectName(QStringLiteral("help"));
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() * 0.9);
    label->setFont(font);
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, palette.color(QPalette::PlaceholderText));
    label->setPalette(palette);
    return label;
}

QWidget* MainWidgetOf(QCheckBox* check, QSpinBox* number, QLineEdit* text, QComboBox* list) {
    if (check != nullptr) {
        return check;
    }
    if (number != nullptr) {
        return number;
    }
    if (text != nullptr) {
        return text;
    }
    return list;
}

}  // namespace

QString LiteralCaption(std::string_view text) {
    return ToQString(text).replace(QLatin1Char('&'), QLatin1String("&&"));
}

SetupControlWidgets::Widgets SetupControlWidgets::MakeWidgets(const SetupControl& control,
                                                              QWidget* parent) {
    Widgets widgets;
    widgets.control = &control;
    const QString name = ToQString(control.name);
    switch (control.kind) {
        case SetupControlKind::Check:
            widgets.check = new QCheckBox(LiteralCaption(control.caption), parent);
            widgets.check->setObjectName(name);
            QObject::connect(widgets.check, &QCheckBox::toggled, widgets.check, [this] {
                if (onCheckToggled) {
                    onCheckToggled();
                }
            });
            break;
        case SetupControlKind::Number:
            widgets.number = new QSpinBox(parent);
            widgets.number->setObjectName(name);
            widgets.number->setRange(0, NumberLimit(control));
            widgets.number->setMinimumWidth(90);
            break;
        case SetupControlKind::Text:
            widgets.text = new QLineEdit(parent);
            widgets.text->setObjectName(name);
            break;
        case SetupControlKind::List:
        case SetupControlKind::TextList:
            widgets.list = new QComboBox(parent);
            widgets.list->setObjectName(name);
            if (!control.sameRow) {
                widgets.list->setMinimumWidth(220);  // the lists of a page line up
            }
            for (const std::string_view item : control.items) {
                widgets.list->addItem(ToQString(item));
            }
            break;
        case SetupControlKind::Options: {
            auto* group = new QButtonGroup(parent);
            for (int i = 0; i < 2; ++i) {
                auto* button = new QRadioButton(
                    LiteralCaption(control.items[static_cast<std::size_t>(i)]), parent);
                button->setObjectName(ToQString(i == 0 ? control.name : control.secondName));
                group->addButton(button, i);
                widgets.options[i] = button;
            }
            break;
        }
        case SetupControlKind::PlayerList:
            widgets.list = new QComboBox(parent);
            widgets.list->setObjectName(name);
            widgets.list->setEditable(true);
            widgets.list->setInsertPolicy(QComboBox::NoInsert);
            widgets.list->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
            m_players = widgets.list;
            m_browse = new QPushButton(LiteralCaption(kBrowseCaption), parent);
            m_browse->setObjectName(QStringLiteral("Command3"));
            widgets.trailing = m_browse;
            break;
    }
    return widgets;
}

void SetupControlWidgets::AddRow(QFormLayout& form, Widgets& widgets, QHBoxLayout*& lastRow) {
    const SetupControl& control = *widgets.control;
    QWidget* main = MainWidgetOf(widgets.check, widgets.number, widgets.text, widgets.list);
    const bool labelled = !control.caption.empty() && widgets.check == nullptr;
    if (control.sameRow && lastRow != nullptr) {
        if (labelled) {
            auto* label = new QLabel(LiteralCaption(control.caption));
            label->setBuddy(main);
            widgets.label = label;
            Append(*lastRow, label);
        }
        Append(*lastRow, main);
    } else if (control.kind == SetupControlKind::Options) {
        auto* buttons = new QVBoxLayout;
        buttons->addWidget(widgets.options[0]);
        buttons->addWidget(widgets.options[1]);
        form.addRow(buttons);
        lastRow = nullptr;
        return;
    } else {
        auto* row = new QHBoxLayout;
        row->addWidget(main);
        if (control.kind != SetupControlKind::PlayerList) {
            row->addStretch(1);
        }
        if (labelled) {
            auto* label = new QLabel(LiteralCaption(control.caption));
            label->setBuddy(main);
            widgets.label = label;
            form.addRow(label, row);
        } else {
            form.addRow(row);
        }
        lastRow = row;
    }
    if (widgets.trailing != nullptr) {
        lastRow->addWidget(widgets.trailing);
    } else if (!control.trailing.empty()) {
        auto* trailing = new QLabel(ToQString(control.trailing));
        widgets.trailing = trailing;
        Append(*lastRow, trailing);
    }
}

QWidget* SetupControlWidgets::BuildPage(const SetupPage& page) {
    auto* frame = new QWidget;
    frame->setObjectName(ToQString(page.frame));
    auto* column = new QVBoxLayout(frame);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(12);

    QFormLayout* form = nullptr;
    std::string_view group;
    QHBoxLayout* lastRow = nullptr;
    for (const SetupControl* control : ControlsOfPage(page.key)) {
        QWidget* parent = frame;
        if (form == nullptr || control->group != group) {
            group = control->group;
            form = new QFormLayout;
            form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
            form->setLabelAlignment(Qt::AlignLeft | Qt::AlignVCenter);
            if (group.empty()) {
                column->addLayout(form);
            } else {
                auto* box = new QGroupBox(ToQString(group), frame);
                box->setLayout(form);
                column->addWidget(box);
                parent = box;
            }
            lastRow = nullptr;
        }
        Widgets widgets = MakeWidgets(*control, parent);
        AddRow(*form, widgets, lastRow);
        if (!control->help.empty()) {
            form->addRow(HelpLabel(control->help));
        }
        m_widgets.emplace(std::string(control->name), widgets);
    }
    column->addStretch(1);
    return frame;
}

void SetupControlWidgets::Fill(const SetupForm& form) {
    for (auto& [name, widgets] : m_widgets) {
        const SetupControlValue& value = form.At(name);
        switch (widgets.control->kind) {
            case SetupControlKind::Check:
                widgets.check->setChecked(value.checked);
                break;
            case SetupControlKind::Number:
                widgets.number->setValue(static_cast<int>(std::clamp(
                    Val(value.text), 0.0, static_cast<double>(NumberLimit(*widgets.control)))));
                break;
            case SetupControlKind::Text:
                widgets.text->setText(ToQString(value.text));
                break;
            case SetupControlKind::List:
            case SetupControlKind::TextList:
                widgets.list->setCurrentIndex(value.choice);
                break;
            case SetupControlKind::Options:
                if (value.choice == 0 || value.choice == 1) {
                    widgets.options[value.choice]->setChecked(true);
                }
                break;
            case SetupControlKind::PlayerList:
                widgets.list->clear();
                for (const std::string& player : form.players) {
                    widgets.list->addItem(ToQString(player));
                }
                widgets.list->setEditText(ToQString(value.text));
                break;
        }
    }
}

SetupForm SetupControlWidgets::Read() const {
    SetupForm form;
    for (const auto& [name, widgets] : m_widgets) {
        SetupControlValue& value = form[name];
        switch (widgets.control->kind) {
            case SetupControlKind::Check:
                value.checked = widgets.check->isChecked();
                break;
            case SetupControlKind::Number:
                value.text = std::to_string(widgets.number->value());
                break;
            case SetupControlKind::Text:
                value.text = ToStd(widgets.text->text());
                break;
            case SetupControlKind::List:
            case SetupControlKind::TextList:
                value.choice = widgets.list->currentIndex();
                break;
            case SetupControlKind::Options:
                value.choice = widgets.options[0]->isChecked()   ? 0
                               : widgets.options[1]->isChecked() ? 1
                                                                 : -1;
                break;
            case SetupControlKind::PlayerList:
                value.text = ToStd(widgets.list->currentText());
                for (int i = 0; i < widgets.list->count(); ++i) {
                    form.players.push_back(ToStd(widgets.list->itemText(i)));
                }
                break;
        }
    }
    return form;
}

void SetupControlWidgets::ApplyEnabled(const SetupForm& form) {
    for (const auto& [name, widgets] : m_widgets) {
        const bool enabled = ControlEnabled(form, name);
        for (QWidget* widget :
             {MainWidgetOf(widgets.check, widgets.number, widgets.text, widgets.list),
              static_cast<QWidget*>(widgets.options[0]), static_cast<QWidget*>(widgets.options[1]),
              widgets.label, widgets.trailing}) {
            if (widget != nullptr) {
                widget->setEnabled(enabled);
            }
        }
    }
}

}  // namespace jk
