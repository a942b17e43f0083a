#pragma once

// The small windows over catalogued volumes, each a list of the volume names (sorted, as
// GetVirtualVolumes gives them) and its command: Virtual_Remove, Virtual_Update,
// Virtual_Rename and Virtual_Export. The work is the caller's, handed in as a callable; a
// window closes when its command says it is done.

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
class QListWidget;
class QProgressBar;
class QPushButton;

namespace jk {

// "Remove Virtual Drive": several names may be selected; Remove hands them over in list
// order (none selected hands an empty list) and closes. Nothing is asked.
class Virtual_Remove final : public QDialog {
    Q_OBJECT

public:
    using RemoveFn = std::function<void(const std::vector<std::string>& names)>;
    Virtual_Remove(const std::vector<std::string>& names, RemoveFn remove,
                   QWidget* parent = nullptr);

private:
    RemoveFn m_remove;
    QListWidget* m_list = nullptr;
};

// "Rename Virtual Drive": a click on a name copies it into the new name's box; Rename hands
// the old and the new name over, and closes when that was accepted.
class Virtual_Rename final : public QDialog {
    Q_OBJECT

public:
    using RenameFn = std::function<bool(const std::string& oldName, const std::string& newName)>;
    Virtual_Rename(const std::vector<std::string>& names, const std::vector<std::string>& history,
                   RenameFn rename, QWidget* parent = nullptr);

private:
    RenameFn m_rename;
    QListWidget* m_list = nullptr;
    QComboBox* m_newName = nullptr;
};

// "Update Virtual Drive": one volume, the path to scan it from (with its history and
// "Browse..."), the two boxes, and the scan's caption and bar.
struct UpdateRequest {
    std::string Name;
    std::string Path;
    bool Eject = false;
    bool NoCache = false;
};

class Virtual_Update final : public QDialog {
    Q_OBJECT

public:
    // Runs the update, reporting through Progress.
    using UpdateFn = std::function<void(const UpdateRequest& request)>;
    using PickFolderFn = std::function<QString(QWidget* parent, const QString& start)>;
    Virtual_Update(const std::vector<std::string>& names, const std::vector<std::string>& history,
                   bool eject, bool noCache, UpdateFn update, QWidget* parent = nullptr);
    void SetFolderPicker(PickFolderFn pick) { m_pick = std::move(pick); }

    // The scan's caption and bar; false when the user closed the window meanwhile.
    bool Progress(std::string_view caption, int value, int maximum);

    // Close: during a scan it stops the scan, and the window closes when the scan ends.
    void reject() override;

private:
    void Command1_Click();

    UpdateFn m_update;
    PickFolderFn m_pick;
    QListWidget* m_list = nullptr;
    QComboBox* m_path = nullptr;
    QCheckBox* m_eject = nullptr;
    QCheckBox* m_noCache = nullptr;
    QLabel* m_caption = nullptr;
    QProgressBar* m_bar = nullptr;
    QPushButton* m_go = nullptr;
    std::unique_ptr<DialogScanProgress> m_progress;
    bool m_scanning = false;
};

// Virtual_Export: several volumes, the file to write ("Browse..." opens JK2Export's Save
// dialog); Export hands both over and closes.
class Virtual_Export final : public QDialog {
    Q_OBJECT

public:
    using ExportFn =
        std::function<void(const std::vector<std::string>& names, const std::string& path)>;
    using PickFileFn = std::function<QString(QWidget* parent, const QString& current)>;
    Virtual_Export(const std::vector<std::string>& names, const std::vector<std::string>& history,
                   const QString& sample, ExportFn exportTo, QWidget* parent = nullptr);
    void SetFilePicker(PickFileFn pick) { m_pick = std::move(pick); }

private:
    ExportFn m_export;
    PickFileFn m_pick;
    QListWidget* m_list = nullptr;
    QComboBox* m_path = nullptr;
};

// The filters of the image dialogs.
QString VirtualImageFilters();
// JK2Export: "Save", starting in the folder of `current`; "" on Cancel.
QString JK2Export(QWidget* parent, const QString& current);
// JK2Import: "Import file", starting in the folder of `lastImport`; "" on Cancel.
QString JK2Import(QWidget* parent, const QString& lastImport);

}  // namespace jk
