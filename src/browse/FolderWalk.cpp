#include "browse/FolderWalk.h"

#include <cmath>
#include <system_error>
#include <thread>
#include <utility>

#include "browse/FolderEntries.h"
#include "util/PathHelpers.h"

namespace jk {

std::string ScanStatusText(std::string_view component, std::size_t songs) {
    std::string text = "Scanning: ";
    text.append(component);
    if (songs > 1) {
        text.append(" | ");
        text.append(std::to_string(songs));
        text.append(" songs");
    }
    return text;
}

int ScanProgressValue(std::size_t i, std::size_t n) {
    if (n == 0) {
        return 0;
    }
    const double share = static_cast<double>(i) / static_cast<double>(n);
    return static_cast<int>(std::floor(share * kScanProgressMaximum));
}

namespace {

// However far the scanner wants to look ahead, a run of folders without songs is not planned
// further than this.
constexpr std::size_t kMostFoldersAhead = 256;

}  // namespace

FolderWalk::FolderWalk(FolderLister& lister, SongScanner& scanner, ScanProgressFn progress,
                       WalkOptions options)
    : m_lister(lister), m_scanner(scanner), m_progress(std::move(progress)), m_options(options) {}

bool FolderWalk::Report(std::string_view status, int value) {
    if (m_progress && !m_progress(ScanProgress{status, value, kScanProgressMaximum})) {
        m_cancelled = true;
    }
    return !m_cancelled;
}

void FolderWalk::Walk(const std::string& path, bool stayOnFilesystem) {
    const bool keep = m_options.StayOnFilesystem;
    m_options.StayOnFilesystem = stayOnFilesystem;
    m_onlyDevice.reset();
    m_start = path;
    m_started = false;
    m_descent.clear();
    m_planned.clear();
    m_filesAhead = 0;
    m_planDone = false;
    m_stopPlanning = false;
    m_wanted = m_scanner.LookAhead();

    // With a look-ahead the folders are listed on a thread of their own; without one (or when
    // no thread can be had) each is listed here when its turn comes.
    std::thread planner;
    if (m_wanted > 0) {
        try {
            planner = std::thread([this] { PlanLoop(m_wanted); });
        } catch (const std::system_error&) {
        }
    }
    const bool threaded = planner.joinable();

    bool stopped = false;
    while (!stopped) {
        // A folder stays in place in the queue while the planner adds others behind it.
        PlannedFolder* folder = NextPlanned(threaded);
        if (folder == nullptr) {
            break;
        }
        // The stop is tested before each sub-folder, as before each file.
        if (!folder->isStart && m_cancelled) {
            break;
        }
        Report(folder->status, 0);
        while (folder->scanned < folder->files) {
            if (m_cancelled) {
                stopped = true;
                break;
            }
            m_scanner.ScanNext();
            ++folder->scanned;
            FileScanned(threaded);
            Report(folder->status, ScanProgressValue(folder->scanned, folder->files));
        }
        if (!stopped) {
            FolderDone(threaded);
        }
    }

    if (threaded) {
        {
            std::lock_guard lock(m_planMutex);
            m_stopPlanning = true;
        }
        m_plannerCv.notify_all();
        planner.join();
    }
    m_scanner.DropAnnounced();
    m_planned.clear();
    m_descent.clear();
    m_filesAhead = 0;
    m_options.StayOnFilesystem = keep;
    m_onlyDevice.reset();
}

FolderWalk::PlannedFolder* FolderWalk::NextPlanned(bool threaded) {
    if (!threaded) {
        PlanAhead();
        return m_planned.empty() ? nullptr : &m_planned.front();
    }
    std::unique_lock lock(m_planMutex);
    while (m_planned.empty() && !m_planDone) {
        m_walkWaiting = true;
        m_walkCv.wait(lock);
    }
    m_walkWaiting = false;
    // Folders stay in place in the deque while the planner adds others behind them.
    return m_planned.empty() ? nullptr : &m_planned.front();
}

// The planner is woken when half of what it planned ahead has been used, not for every file:
// each wake-up costs a system call and a switch.
bool FolderWalk::PlannerShouldWakeLocked() const {
    return m_plannerWaiting && m_filesAhead <= m_wanted / 2 &&
           m_planned.size() <= kMostFoldersAhead / 2;
}

void FolderWalk::FileScanned(bool threaded) {
    // The lock is taken only when the planner may be due a wake-up.
    const std::size_t ahead = m_filesAhead.fetch_sub(1, std::memory_order_relaxed) - 1;
    if (threaded && ahead <= m_wanted / 2) {
        std::lock_guard lock(m_planMutex);
        if (PlannerShouldWakeLocked()) {
            m_plannerCv.notify_one();
        }
    }
}

void FolderWalk::FolderDone(bool threaded) {
    std::lock_guard lock(m_planMutex);
    m_planned.pop_front();
    if (threaded && PlannerShouldWakeLocked()) {
        m_plannerCv.notify_one();
    }
}

void FolderWalk::PlanAhead() {
    while (!m_planDone && !m_cancelled) {
        if (!m_planned.empty()) {
            break;
        }
        PlanNextFolder();
    }
}

void FolderWalk::PlanLoop(std::size_t wanted) {
    for (;;) {
        {
            std::unique_lock lock(m_planMutex);
            while (!m_stopPlanning &&
                   (m_filesAhead >= wanted || m_planned.size() >= kMostFoldersAhead)) {
                m_plannerWaiting = true;
                m_plannerCv.wait(lock);
            }
            m_plannerWaiting = false;
            if (m_stopPlanning || m_cancelled) {
                m_planDone = true;
                m_walkCv.notify_one();
                return;
            }
        }
        PlanNextFolder();
        std::lock_guard lock(m_planMutex);
        if (m_planDone) {
            m_walkCv.notify_one();
            return;
        }
    }
}

void FolderWalk::PlanNextFolder() {
    if (!m_started) {
        m_started = true;
        Enter(m_start, true);
        return;
    }
    while (!m_descent.empty()) {
        Frame& top = m_descent.back();
        if (top.next < top.dirs.size()) {
            std::string sub = top.path + top.dirs[top.next++];
            if (IsTemporaryInternetFolder(sub)) {
                continue;
            }
            Enter(std::move(sub), false);
            return;
        }
        m_descent.pop_back();
    }
    std::lock_guard lock(m_planMutex);
    m_planDone = true;
}

void FolderWalk::Enter(std::string path, bool isStart) {
    if (IsSystemFolder(path)) {
        return;
    }
    std::vector<std::string> dirs;
    std::vector<std::string> files;
    FolderId id;
    const ListResult listed =
        GetFolderEntries(path, dirs, files, m_options.FilterMode, m_lister, m_onlyDevice, id);
    if (listed == ListResult::OtherFilesystem) {
        return;
    }
    if (listed == ListResult::Listed) {
        // A folder met a second time (a bind mount of itself or of a parent) is not walked again.
        if (id.inode != 0 && !m_entered.insert(id).second) {
            return;
        }
        if (isStart && m_options.StayOnFilesystem) {
            m_onlyDevice = id.device;
        }
    }
    // The files are announced before their folder joins the queue, so a file is always
    // announced before the walk's thread asks for it.
    for (const std::string& name : files) {
        m_scanner.Announce(path + name);
    }
    PlannedFolder folder;
    folder.status = ScanStatusText(LastFolder(path), files.size());
    folder.files = files.size();
    folder.isStart = isStart;
    if (!dirs.empty()) {
        m_descent.push_back(Frame{std::move(path), std::move(dirs), 0});
    }
    std::lock_guard lock(m_planMutex);
    m_filesAhead += folder.files;
    m_planned.push_back(std::move(folder));
    if (m_walkWaiting) {
        m_walkCv.notify_one();
    }
}

}  // namespace jk
