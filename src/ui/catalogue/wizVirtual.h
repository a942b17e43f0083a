#pragma once

// The Virtual Drive Wizard: a folder to start from and a friendly volume name (each with its
// four-deep history), the two boxes VirtualEject and VirtualNoCache, and Create, which refuses
// a name that is invalid or taken and otherwise runs the scan with this window's caption and
// bar. The scan, the name test and the disc's label come from the caller.

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <QDialog>

#include "ui/catalogue/DialogParts.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QProgressBar;
class QPushButton;

namespace jk {

struct VirtualWizardState {
    std::vector<std::string> Drives;   // VRnewdrive1..4
    std::vector<std::string> Volumes;  // VRnewvolume1..4
    bool Eject = false;                // VirtualEject
    bool NoCache = false;              // VirtualNoCache
};

struct VirtualWizardHooks {
    // Command4 ("Extract..."): the label of the disc that holds a path ("" when none).
    std::function<std::string(const std::string& path)> DiscLabel;
    // ValidVolume and UniqueVolume together; a refusal tells the user ("Drats!") itself.
    std::function<bool(const std::string& name)> NameAccepted;
    // CreateVirtualDrive (and the eject when asked), reporting through Progress; true when a
    // volume was added.
    std::function<bool(const std::string& path, const std::string& name, bool noCache, bool eject)>
        Create;
    // The folder dialog "Start scan from..."; "" on Cancel. Tests replace it.
    std::function<QString(QWidget* parent, const QString& start)> PickFolder;
};

class wizVirtual final : public QDialog {
    Q_OBJECT

public:
    wizVirtual(const VirtualWizardState& state, VirtualWizardHooks hooks,
               QWidget* parent = nullptr);

    // The scan's caption and bar; false when the user closed the window meanwhile.
    bool Progress(std::string_view caption, int value, int maximum);
    // The path and name as they stand, and the boxes: what CleanUp stores.
    std::string Path() const;
    std::string Name() const;
    bool Eject() const;
    bool NoCache() const;
    bool Scanning() const { return m_scanning; }

    // Close: during a scan it stops the scan, and the window closes when the scan ends.
    void reject() override;

private:
    void Command1_Click();  // Create
    void Command3_Click();  // Browse...
    void Command4_Click();  // Extract...

    VirtualWizardHooks m_hooks;
    QComboBox* m_path = nullptr;
    QComboBox* m_name = nullptr;
    QCheckBox* m_eject = nullptr;
    QCheckBox* m_noCache = nullptr;
    QLabel* m_caption = nullptr;
    QProgressBar* m_bar = nullptr;
    QPushButton* m_create = nullptr;
    std::unique_ptr<DialogScanProgress> m_progress;
    bool m_scanning = false;
};

}  // namespace jk
