#pragma once

// The Silent MP3 Wizard: a playable MP3 of silence, of the size the user types, in the data
// folder. The file is written away from the window's thread, so the window stays alive while
// a large one is made.

#include <memory>
#include <string>

#include <QDialog>

class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QThread;

namespace jk {

class wizSilent final : public QDialog {
    Q_OBJECT

public:
    // `folder` is the data folder, ending in "/".
    explicit wizSilent(std::string folder, QWidget* parent = nullptr);
    ~wizSilent() override;

    // True while a file is being written.
    bool Working() const { return m_worker != nullptr; }

Q_SIGNALS:
    // A file was written (its path) or could not be (the reason), once the work ended.
    void Finished(bool ok, const QString& pathOrReason);

public Q_SLOTS:
    // Closing waits for the file being written.
    void reject() override;

private:
    void Command1_Click();  // "Do it!"
    void WorkDone();

    struct Work;
    std::string m_folder;
    QLineEdit* m_size = nullptr;
    QPushButton* m_doIt = nullptr;
    QPushButton* m_close = nullptr;
    QProgressBar* m_progress = nullptr;
    QLabel* m_status = nullptr;
    QThread* m_worker = nullptr;
    std::shared_ptr<Work> m_work;
};

// Opens the Silent MP3 Wizard modally over `parent`, writing into `folder`.
void ShowSilentWizard(QWidget* parent, const std::string& folder);

}  // namespace jk
