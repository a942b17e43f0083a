#include "catalogue/VirtualCatalogue.h"

#include <array>

#include "catalogue/OlderVBaseForms.h"
#include "catalogue/SongFields.h"
#include "catalogue/VBaseFormat.h"
#include "catalogue/VolumeFile.h"
#include "util/PathHelpers.h"
#include "util/StringHelpers.h"
#include "util/Text.h"

namespace jk {
namespace {

constexpr std::int64_t kMaxOlderCatalogueBytes = std::int64_t{512} << 20;
constexpr std::string_view kSavingSuffix = ".saving";

std::string SavingName(const std::string& folder, std::string_view name) {
    return JoinPath(folder, "." + std::string(name) + std::string(kSavingSuffix));
}

// The older text form of the database begins with two lines of numbers: the record count and
// the field count.
bool LooksLikeOlderDatabase(std::string_view bytes) {
    for (int line = 0; line < 2; ++line) {
        const std::size_t end = bytes.find('\n');
        if (end == std::string_view::npos) {
            return false;
        }
        std::string_view text = bytes.substr(0, end);
        if (!text.empty() && text.back() == '\r') {
            text.remove_suffix(1);
        }
        text = Trim(text);
        if (text.empty() || !IsAllDigits(text)) {
            return false;
        }
        bytes.remove_prefix(end + 1);
    }
    return true;
}

bool LoadOlderForm(const std::string& path, VirtualCatalogue& catalogue, bool strict) {
    std::string bytes;
    if (!ReadWholeFile(path, bytes, kMaxOlderCatalogueBytes).ok) {
        return false;
    }
    if (strict && !LooksLikeOlderDatabase(bytes)) {
        return false;
    }
    ReadOlderVBaseForm(bytes, true, [&catalogue](const SongFieldViews& fields) {
        SongInfo& song = catalogue.VirtualDrive.emplace_back();
        for (int key = 1; key <= kSongFieldCount; ++key) {
            SongField(song, key) = fields[static_cast<std::size_t>(key - 1)];
        }
    });
    return true;
}

void EmptyTables(VirtualCatalogue& catalogue) {
    catalogue.Volumes.clear();
    catalogue.VirtualDrive.clear();
}

}  // namespace

UserMessage LoadBackupQuestion() {
    return {
        "Problems were encountered loading the virtual-drive database.  Would you like to "
        "try loading the backup?",
        "Verify", MessageIcon::Question};
}

UserMessage LoadOlderBackupQuestion() {
    return {
        "Problems were encountered loading the virtual-drive database backup.  Would you "
        "like to try loading another older backup?",
        "Verify", MessageIcon::Question};
}

UserMessage CatalogueBeyondRepairMessage() {
    return {
        "Sorry, looks like the cache (and any backups) were corrupt beyond repair.  You will "
        "have to rebuild your virtual-drives.",
        "Error", MessageIcon::Critical};
}

UserMessage CatalogueNotSavedMessage() {
    return {"The virtual-drive database could not be saved.  Your previous copy is intact.",
            "Sorry...", MessageIcon::Warning};
}

void RemoveSaveLeftovers(CatalogueFiles& files, const std::string& folder) {
    constexpr std::array<std::string_view, 4> kNames = {kMasterFileName, kMasterBackup2,
                                                        kMasterBackup3, kDiscsFileName};
    for (const std::string& name : files.List(folder)) {
        for (const std::string_view target : kNames) {
            const std::string hidden = "." + std::string(target);
            // Ours (".master.dat.saving") and those of an interrupted atomic write
            // (".master.dat.tmp-123").
            if (name == hidden + std::string(kSavingSuffix) || StartsWith(name, hidden + ".tmp-")) {
                files.Remove(JoinPath(folder, name));
            }
        }
    }
}

bool LoadDatabaseFile(const std::string& path, VirtualCatalogue& catalogue, bool strict,
                      bool& volumesReady, const LoadProgress& progress) {
    volumesReady = false;
    ReadFile file(path);
    if (!file.IsOpen()) {
        return false;
    }
    std::array<std::uint8_t, 5> head{};
    const std::int64_t got = file.ReadAt(0, head);
    if (got == 5 && std::string_view(reinterpret_cast<const char*>(head.data()), 5) == kVBaseMark) {
        const VolumesLoad load = LoadVolumes(path, catalogue.Volumes, progress);
        volumesReady = load.ok;
        return load.ok;
    }
    if (strict && got <= 0) {
        return false;
    }
    return LoadOlderForm(path, catalogue, strict);
}

bool LoadVirtualCache(VirtualCatalogue& catalogue, const std::string& folder,
                      const CatalogueOptions& options, CatalogueQuestions& questions,
                      const LoadProgress& progress) {
    catalogue.LoadedWhole = false;
    catalogue.BackupsMoved = false;
    catalogue.Discs = LoadDiscs(JoinPath(folder, kDiscsFileName));
    const std::string master = JoinPath(folder, kMasterFileName);
    const std::string backup2 = JoinPath(folder, kMasterBackup2);
    const std::string backup3 = JoinPath(folder, kMasterBackup3);
    bool ready = false;
    if (!FileExists(master)) {
        catalogue.LoadedWhole = true;
        return false;
    }
    if (LoadDatabaseFile(master, catalogue, options.safe, ready, progress)) {
        catalogue.LoadedWhole = true;
        return ready;
    }
    bool loaded = false;
    if (FileExists(backup2)) {
        if (!questions.AskYesNo(LoadBackupQuestion())) {
            return ready;
        }
        questions.ClearProgress();
        if (options.safe) {
            EmptyTables(catalogue);
        }
        loaded = LoadDatabaseFile(backup2, catalogue, options.safe, ready, progress);
    }
    if (!loaded && FileExists(backup3)) {
        if (!questions.AskYesNo(LoadOlderBackupQuestion())) {
            return ready;
        }
        questions.ClearProgress();
        if (options.safe) {
            EmptyTables(catalogue);
        }
        loaded = LoadDatabaseFile(backup3, catalogue, options.safe, ready, progress);
    }
    if (!loaded) {
        questions.ShowMessage(CatalogueBeyondRepairMessage());
    }
    return ready;
}

bool SaveMovesBackups(const VirtualCatalogue& catalogue, const CatalogueOptions& options) {
    if (!options.safe) {
        return true;
    }
    return catalogue.LoadedWhole && !catalogue.BackupsMoved;
}

namespace {

class SaveTransaction {
public:
    SaveTransaction(CatalogueFiles& files, std::string folder, SaveStepHook hook)
        : m_files(files), m_folder(std::move(folder)), m_hook(std::move(hook)) {}
    ~SaveTransaction() {
        // Whatever was not renamed into place goes.
        for (const Pending& p : m_pending) {
            m_files.Remove(p.temp);
        }
    }
    SaveTransaction(const SaveTransaction&) = delete;
    SaveTransaction& operator=(const SaveTransaction&) = delete;

    void Step(std::string_view what) {
        if (m_hook) {
            m_hook(++m_step, what);
        }
    }

    // Writes the bytes `write` gives under the temporary name of `target`.
    IoResult Prepare(
        std::string_view target,
        const std::function<bool(const std::function<bool(std::string_view)>&)>& write) {
        const std::string temp = SavingName(m_folder, target);
        std::string error;
        std::unique_ptr<FileSink> sink = m_files.Create(temp, error);
        if (!sink) {
            return {false, error};
        }
        m_pending.push_back({temp, JoinPath(m_folder, target)});
        const bool written = write([&sink](std::string_view piece) { return sink->Write(piece); });
        IoResult finished = sink->Finish();
        if (!written && finished.ok) {
            finished = {false, "cannot write " + temp};
        }
        Step("written " + std::string(target));
        return finished;
    }

    // The backups are files that are never written in place: a second name for the same file
    // is as good as a copy, and costs nothing.
    IoResult PrepareCopy(std::string_view from, std::string_view target) {
        const std::string temp = SavingName(m_folder, target);
        if (m_files.Link(JoinPath(m_folder, from), temp)) {
            m_pending.push_back({temp, JoinPath(m_folder, target)});
            Step("linked " + std::string(target));
            return {};
        }
        std::string bytes;
        IoResult read = m_files.Read(JoinPath(m_folder, from), bytes);
        if (!read.ok) {
            return read;
        }
        return Prepare(target, [&bytes](const auto& sink) { return sink(bytes); });
    }

    // Renames every prepared file into place, in the order prepared.
    IoResult Commit() {
        IoResult result;
        for (Pending& pending : m_pending) {
            result = m_files.Rename(pending.temp, pending.target);
            if (!result.ok) {
                break;
            }
            pending.temp.clear();
            Step("renamed " + std::string(BareName(pending.target)));
        }
        std::erase_if(m_pending, [](const Pending& p) { return p.temp.empty(); });
        m_files.SyncFolder(m_folder);
        return result;
    }

private:
    struct Pending {
        std::string temp;
        std::string target;
    };
    CatalogueFiles& m_files;
    std::string m_folder;
    SaveStepHook m_hook;
    std::vector<Pending> m_pending;
    int m_step = 0;
};

}  // namespace

IoResult SaveVirtualCatalogue(const VirtualCatalogue& catalogue, const std::string& folder,
                              CatalogueFiles& files, const CatalogueSave& save) {
    SaveTransaction transaction(files, folder, save.hook);
    IoResult result;
    if (save.moveBackups) {
        if (files.Exists(JoinPath(folder, kMasterBackup2))) {
            result = transaction.PrepareCopy(kMasterBackup2, kMasterBackup3);
            if (!result.ok) {
                return result;
            }
        }
        if (files.Exists(JoinPath(folder, kMasterFileName))) {
            result = transaction.PrepareCopy(kMasterFileName, kMasterBackup2);
            if (!result.ok) {
                return result;
            }
        }
    }
    result = transaction.Prepare(kMasterFileName, [&catalogue](const auto& sink) {
        return WriteVolumes(catalogue.Volumes, sink);
    });
    if (!result.ok) {
        return result;
    }
    if (!catalogue.Discs.empty() || files.Exists(JoinPath(folder, kDiscsFileName))) {
        result = transaction.Prepare(kDiscsFileName, [&catalogue](const auto& sink) {
            return sink(DiscsBytes(catalogue.Discs));
        });
        if (!result.ok) {
            return result;
        }
    }
    return transaction.Commit();
}

}  // namespace jk
