#pragma once

// The tip of the day: one tip at a time with Previous and Next, and whether tips show at
// start-up (ShowTips). The tip shown last is kept in LastTip.

#include <cstdint>

#include <QDialog>

class QCheckBox;
class QLabel;

namespace jk {

struct Settings;

class TipsDialog final : public QDialog {
    Q_OBJECT

public:
    TipsDialog(Settings& settings, QWidget* parent = nullptr);

    QString TipText() const;
    // The tip after the one shown last.
    void ShowNext();

protected:
    void done(int result) override;

private:
    void Show(std::int16_t tip);

    Settings& m_settings;
    QLabel* m_tip = nullptr;
    QCheckBox* m_showAtStart = nullptr;
};

}  // namespace jk
