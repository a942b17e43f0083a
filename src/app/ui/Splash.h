#pragma once

// The splash window that opens first: the product and version, the status line of the start-up
// steps, and the progress box the data files' readers draw in while they load.

#include <QWidget>

class QLabel;
class QProgressBar;

namespace jk {

class Splash final : public QWidget {
    Q_OBJECT

public:
    explicit Splash(QWidget* parent = nullptr);

    // Shows a status text and repaints at once (start-up holds the event loop meanwhile).
    void SetStatus(const QString& text);
    QString StatusText() const;
    QString VersionText() const;
    void ClearProgress();
    void ShowProgress(qint64 done, qint64 total);

private:
    QLabel* m_label2 = nullptr;
    QLabel* m_status = nullptr;
    QProgressBar* m_progress = nullptr;
};

}  // namespace jk
