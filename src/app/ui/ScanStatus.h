#pragma once

// The progress window of a long walk (ScanStatus): the status line of the folder being
// scanned, a progress bar over its files, and Abort. Closing the window aborts too. It is not
// modal: the main window stays in sight and keeps painting while the walk runs.

#include <QDialog>

class QLabel;
class QProgressBar;
class QPushButton;

namespace jk {

struct ScanProgress;

class ScanStatus final : public QDialog {
    Q_OBJECT

public:
    explicit ScanStatus(QWidget* parent = nullptr);

    // Ready for a new walk: no abort asked, an empty status, the bar at 0.
    void Begin(const QString& title);
    void Show(const ScanProgress& progress);
    // Set by Abort and by closing the window; the walk reads it between files.
    bool AbortAsked() const { return m_abort; }
    QString StatusText() const;
    QPushButton* AbortButton() const { return m_abortButton; }

protected:
    void closeEvent(QCloseEvent* event) override;
    void reject() override;

private:
    QLabel* m_status = nullptr;
    QProgressBar* m_bar = nullptr;
    QPushButton* m_abortButton = nullptr;
    bool m_abort = false;
};

}  // namespace jk
