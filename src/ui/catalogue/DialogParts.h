#pragma once

// Pieces the catalogue's windows share: text conversion, buttons, icons, the four-deep history
// boxes, the list of volume names, and the scan's caption and bar that yield to the event loop.

#include <string>
#include <string_view>
#include <vector>

#include <QElapsedTimer>
#include <QString>

#include "ui/common/QtText.h"

class QComboBox;
class QIcon;
class QLabel;
class QListWidget;
class QProgressBar;
class QPushButton;
class QWidget;

namespace jk {

std::string ToStdString(const QString& text);

QPushButton* DialogButton(std::string_view caption, const char* name);

// The desktop theme's icon of that name, else the drawing bundled with these windows, so a
// theme without it leaves no blank button.
QIcon ThemedIcon(const char* name);

// An editable box offering a history (the empty entries left out), showing its first entry
// or `first` when given.
QComboBox* HistoryCombo(const std::vector<std::string>& history, const char* name,
                        const QString& first = QString());

// The volume names, sorted as GetVirtualVolumes gives them; several selectable or one.
QListWidget* VolumeList(const std::vector<std::string>& names, bool several, const char* name);
// The selected names, in list order.
std::vector<std::string> SelectedNames(const QListWidget& list);

// The caption and bar of a scan running inside a window: each call updates them and lets the
// event loop run at most every 50 ms; false once Stop was asked for (the window's Close).
class DialogScanProgress {
public:
    DialogScanProgress(QLabel& caption, QProgressBar& bar) : m_caption(caption), m_bar(bar) {}
    bool Update(std::string_view caption, int value, int maximum);
    void Stop() { m_stopped = true; }
    void Reset() { m_stopped = false; }
    bool Stopped() const { return m_stopped; }

private:
    QLabel& m_caption;
    QProgressBar& m_bar;
    QElapsedTimer m_sinceYield;
    bool m_stopped = false;
};

}  // namespace jk
