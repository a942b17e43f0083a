#pragma once

// The recursive folder walk: depth first and pre-order, the songs of a folder in listing order
// before its sub-folders in listing order. It never follows a link to a folder, never enters a
// folder twice (a bind mount of a parent cannot make it loop), keeps out of the kernel's trees,
// and can be held to the filesystem it started on. When the scanner reads ahead, a planner
// thread lists the folders a little ahead of their turn, so that neither the listing nor the
// reading waits for the other; the order and the rules stay the same. The descent is kept in
// a list, not on the call stack, so no depth of folders can exhaust the stack.

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "browse/FolderLister.h"
#include "listing/SongScanner.h"
#include "listing/WalkRules.h"

namespace jk {

// What the progress window shows while a walk runs.
struct ScanProgress {
    std::string_view Status;  // "Scanning: NAME" or "Scanning: NAME | N songs"
    int Value = 0;            // 0 .. Maximum, for the current folder's files
    int Maximum = 30;
};

// Called when a folder is begun and after each file; returning false stops the walk before the
// next file or sub-folder (the file under way is finished first).
using ScanProgressFn = std::function<bool(const ScanProgress&)>;

inline constexpr int kScanProgressMaximum = 30;

// "Scanning: " + component, with " | " + count + " songs" when the folder holds more than one.
std::string ScanStatusText(std::string_view component, std::size_t songs);
// Int(i / n * 30): the bar after file i of n.
int ScanProgressValue(std::size_t i, std::size_t n);

struct WalkOptions {
    int FilterMode = kFilterMp3;
    // Keep to the filesystem of the folder the walk starts at (a walk of a drive).
    bool StayOnFilesystem = false;
};

class FolderWalk {
public:
    FolderWalk(FolderLister& lister, SongScanner& scanner, ScanProgressFn progress,
               WalkOptions options);

    // Walks `path` and everything below it. Folders already walked by this object are not
    // walked again, so one object can walk several drives without doubling a bind mount.
    void Walk(const std::string& path, bool stayOnFilesystem);
    void Walk(const std::string& path) { Walk(path, m_options.StayOnFilesystem); }

    bool Cancelled() const { return m_cancelled; }
    void Cancel() { m_cancelled = true; }

private:
    struct FolderIdHash {
        std::size_t operator()(const FolderId& id) const noexcept {
            return std::hash<std::uint64_t>()(id.inode * 0x9E3779B97F4A7C15ULL ^ id.device);
        }
    };
    // A folder that has been listed and waits for its turn.
    struct PlannedFolder {
        std::string status;
        std::size_t files = 0;
        std::size_t scanned = 0;
        bool isStart = false;
    };
    // A folder of the depth-first descent whose sub-folders are not all planned yet.
    struct Frame {
        std::string path;
        std::vector<std::string> dirs;
        std::size_t next = 0;
    };

    void PlanAhead();
    void PlanLoop(std::size_t wanted);
    void PlanNextFolder();
    void Enter(std::string path, bool isStart);
    PlannedFolder* NextPlanned(bool planner);
    void FileScanned(bool planner);
    void FolderDone(bool planner);
    bool PlannerShouldWakeLocked() const;
    bool Report(std::string_view status, int value);

    FolderLister& m_lister;
    SongScanner& m_scanner;
    ScanProgressFn m_progress;
    WalkOptions m_options;
    std::atomic<bool> m_cancelled = false;
    std::optional<std::uint64_t> m_onlyDevice;
    std::unordered_set<FolderId, FolderIdHash> m_entered;

    // The plan: the walk's order, worked out a little ahead of the scanning. The descent and
    // the folders met belong to whoever plans; the queue is shared under the mutex.
    std::string m_start;
    bool m_started = false;
    std::vector<Frame> m_descent;
    std::mutex m_planMutex;
    std::condition_variable m_plannerCv;  // the planner waits for room ahead
    std::condition_variable m_walkCv;     // the walk's thread waits for a planned folder
    std::deque<PlannedFolder> m_planned;
    // Files announced and not yet scanned; changed by both threads, read under the lock where
    // a wake-up depends on it.
    std::atomic<std::size_t> m_filesAhead = 0;
    std::size_t m_wanted = 0;
    bool m_planDone = false;
    bool m_stopPlanning = false;
    bool m_plannerWaiting = false;
    bool m_walkWaiting = false;
};

}  // namespace jk
