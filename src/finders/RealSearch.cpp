#include "finders/RealSearch.h"

#include <utility>
#include <vector>

#include "browse/FolderEntries.h"
#include "browse/FolderWalk.h"
#include "finders/ResultRows.h"
#include "finders/SearchFields.h"
#include "listing/ReadAhead.h"
#include "listing/WalkRules.h"
#include "util/PathHelpers.h"
#include "util/Text.h"

namespace jk {
namespace {

// The search's side of a walk: each file read, tested and added, and the window told.
class SearchWalk {
public:
    SearchWalk(const SearchRequest& request, const RealFileSetup& setup, RowList& rows,
               SearchFront& front)
        : m_request(request), m_setup(setup), m_rows(rows), m_front(front) {}

    ReadAheadScanner MakeScanner() {
        SongConsumer consume = [this](std::string& path, const PrefetchedBytes* prefetched) {
            Consume(path, prefetched);
        };
        CacheStampLookup stamps;
        if (m_setup.Lookup != nullptr && !m_setup.ReadSong) {
            stamps = [lookup = m_setup.Lookup](std::string_view path) {
                return lookup->StampAhead(path);
            };
        }
        return ReadAheadScanner(m_setup.FilterMode, std::move(consume), std::move(stamps),
                                m_setup.ReadAheadThreads);
    }

    // The walk's progress: PBar, and whether to go on.
    bool Progress(int value) {
        m_front.SetProgress(value, kSearchBarSteps);
        return !Stopped();
    }

    bool Stopped() {
        if (m_failed) {
            return true;
        }
        if (m_front.AbortRequested()) {
            m_aborted = true;
        }
        return m_aborted;
    }

    SearchEnd End() const {
        if (m_failed) {
            return SearchEnd::Failed;
        }
        return m_aborted ? SearchEnd::Aborted : SearchEnd::Done;
    }

private:
    void Consume(std::string& path, const PrefetchedBytes* prefetched) {
        if (m_failed) {
            return;
        }
        ShowFolderOf(path);
        SongInfo read;
        if (m_setup.ReadSong) {
            read = m_setup.ReadSong(path);
        } else if (m_setup.Lookup == nullptr) {
            return;
        }
        const SongInfo& song =
            m_setup.ReadSong ? read : LendSongInfo(path, *m_setup.Lookup, prefetched);
        const bool readable = !IsNonExistant(song);
        if (!readable || Trim(song.Title) == kFileNonExistant) {
            return;
        }
        const bool found =
            TextTest([&song](SearchField field) { return SearchFieldOf(song, field); },
                     m_request.Fields, m_request.Query);
        const Verdict verdict = m_request.SizeDate.Match(song.Size, song.Date);
        if (verdict == Verdict::Failed) {
            m_failed = true;
            return;
        }
        if (found && verdict == Verdict::Match) {
            m_rows.push_back(RealHitRow(song));
        }
    }

    // lblStatus names the folder whose files are being searched.
    void ShowFolderOf(std::string_view path) {
        const std::size_t slash = path.rfind(kSep);
        const std::string_view folder =
            slash == std::string_view::npos ? std::string_view() : path.substr(0, slash + 1);
        if (folder != m_shownFolder) {
            m_shownFolder.assign(folder);
            m_front.SetStatus(std::string(kSearchingPrefix) + m_shownFolder);
        }
    }

    const SearchRequest& m_request;
    const RealFileSetup& m_setup;
    RowList& m_rows;
    SearchFront& m_front;
    std::string m_shownFolder;
    bool m_aborted = false;
    bool m_failed = false;
};

// One folder without its sub-folders.
void SearchOneFolder(std::string folder, SearchWalk& walk, const RealFileSetup& setup,
                     SearchFront& front) {
    std::vector<std::string> dirs;
    std::vector<std::string> files;
    GetFolderEntries(folder, dirs, files, setup.FilterMode, *setup.Lister);
    front.SetStatus(std::string(kSearchingPrefix) + folder);
    if (files.empty() || IsSystemFolder(folder)) {
        return;
    }
    ReadAheadScanner scanner = walk.MakeScanner();
    for (const std::string& name : files) {
        scanner.Announce(folder + name);
    }
    for (std::size_t i = 1; i <= files.size(); ++i) {
        if (walk.Stopped()) {
            break;
        }
        scanner.ScanNext();
        walk.Progress(ScanProgressValue(i, files.size()));
    }
    scanner.DropAnnounced();
    front.SetProgress(0, kSearchBarSteps);
}

}  // namespace

SearchEnd RecurseSearchFolder(const std::string& folder, const SearchRequest& request,
                              const RealFileSetup& setup, RowList& rows, SearchFront& front,
                              bool stayOnFilesystem) {
    SearchWalk walk(request, setup, rows, front);
    if (!request.Subfolders) {
        SearchOneFolder(folder, walk, setup, front);
        return walk.End();
    }
    ReadAheadScanner scanner = walk.MakeScanner();
    FolderWalk folders(
        *setup.Lister, scanner,
        [&walk](const ScanProgress& step) { return walk.Progress(step.Value); },
        WalkOptions{setup.FilterMode, stayOnFilesystem});
    folders.Walk(folder, stayOnFilesystem);
    front.SetProgress(0, kSearchBarSteps);
    return walk.End();
}

SearchEnd SearchFolder(const std::string& folder, const SearchRequest& request,
                       const RealFileSetup& setup, RowList& rows, SearchFront& front) {
    front.SetPanelStatus(request.Subfolders ? kSearchingDirectories : kSearchingDirectory);
    return RecurseSearchFolder(folder, request, setup, rows, front);
}

SearchEnd SearchAllRealDrives(const DriveList& drives, const SearchRequest& request,
                              const RealFileSetup& setup, RowList& rows, SearchFront& front) {
    front.SetPanelStatus(kSearchingMyComputer);
    SearchWalk walk(request, setup, rows, front);
    // One walk over all drives, so a folder bind-mounted on a second drive is searched once.
    ReadAheadScanner scanner = walk.MakeScanner();
    FolderWalk folders(
        *setup.Lister, scanner,
        [&walk](const ScanProgress& step) { return walk.Progress(step.Value); },
        WalkOptions{setup.FilterMode, true});
    for (const DriveRoot& drive : drives) {
        if (drive.Type == kDriveNotReady || drive.HomeShortcut) {
            continue;
        }
        if (walk.Stopped()) {
            break;
        }
        if (request.Subfolders) {
            folders.Walk(drive.Root, true);
        } else {
            SearchOneFolder(drive.Root, walk, setup, front);
        }
    }
    front.SetProgress(0, kSearchBarSteps);
    return walk.End();
}

}  // namespace jk
