#pragma once

// Where a read-ahead takes the files it looks at: the file system, or in tests a source that is
// slow, makes a read wait for the disk, or loses a file on the way. Each thread that reads ahead
// has a source of its own, so a source keeps what it likes between files without a lock.

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "metadata/SongFileReader.h"
#include "util/FileIo.h"

namespace jk {

// A file opened ahead of its reading, with its status as it was then; closed when empty.
struct OpenedAhead {
    ReadFile file;
    FileStatus status;
};

class AheadFiles {
public:
    virtual ~AheadFiles() = default;
    // The status of the file at `path`, links followed.
    virtual FileStatus Stat(std::string_view path) = 0;
    // Fills `bytes` with the file's status and, for a regular file of song size, the head and
    // tail blocks a song reader takes first (HeadBytesWanted and kTailBlockBytes). A file that
    // can't be opened leaves the blocks empty and its status as Stat gives it; a block that
    // can't be read whole is left empty. False when a block had to come from the disk.
    // `opened`, when it holds a file, is the file at `path` as Expect opened it.
    virtual bool ReadHeadAndTail(std::string_view path, OpenedAhead* opened,
                                 PrefetchedBytes& bytes) = 0;
    // Tells the source that the head and tail blocks of the file at `path` will be read soon, so
    // that the disk brings them while other files are read: many reads in flight at once cost
    // little more than one. Nothing is waited for but the file's opening. The file may be left
    // open in `opened`, to be handed to ReadHeadAndTail; a file that can't be opened is passed
    // over.
    virtual void Expect(std::string_view path, OpenedAhead& opened) = 0;
};

// Makes a source for one thread.
using AheadFilesMaker = std::function<std::unique_ptr<AheadFiles>()>;

// The file system's files. The folder looked at last is held open, so the files of a folder
// are looked up by their names alone; a folder renamed while a walk is in it keeps giving its
// files under the names the walk knows them by, as its listing already did. Files opened for
// their head and tail are marked as read at random places, so the system reads no more of them
// than the blocks asked for, and the tail is asked for before the head is read, so that the disk
// brings both at once. A file expected is asked for its first head block and its tail block alone.
class DiskAheadFiles final : public AheadFiles {
public:
    FileStatus Stat(std::string_view path) override;
    bool ReadHeadAndTail(std::string_view path, OpenedAhead* opened,
                         PrefetchedBytes& bytes) override;
    void Expect(std::string_view path, OpenedAhead& opened) override;

private:
    struct HeldFolder {
        // Points `name` at `path` as the held folder knows it; the folder, or null when `path`
        // is to be taken whole.
        const FolderHandle* Place(std::string_view path);
        std::string path;
        FolderHandle handle;
        std::string name;
    };

    ReadFile Open(HeldFolder& held, std::string_view path);

    HeldFolder m_read;    // the files read
    HeldFolder m_expect;  // the files expected, further ahead (often in a later folder)
};

// The head and tail of an open file into `bytes`, as ReadHeadAndTail gives them; its status is
// in bytes.status already. False when a block had to come from the disk.
bool ReadSongBlocks(const ReadFile& file, PrefetchedBytes& bytes);

}  // namespace jk
