#pragma once

// The file layer: whole-file and positioned reads with stated size limits, atomic writes, and
// the status of a path. Failures are values with a reason; nothing here throws.

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace jk {

struct FileStatus {
    bool exists = false;
    bool isDirectory = false;
    bool isRegular = false;
    std::int64_t size = 0;
    std::int64_t modifiedSeconds = 0;  // seconds since the epoch, UTC
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
};

// Follows links, as the operating system's own file dialogs do.
FileStatus StatPath(const std::string& path);
// Does not follow a final link (for walks that must not follow links to folders).
FileStatus StatPathNoFollow(const std::string& path);

bool FileExists(const std::string& path);    // a file (not a folder) stands there
bool FolderExists(const std::string& path);  // a folder stands there

// A folder held open so that names in it are looked up without walking its path again. Looking
// up a name through it finds the folder itself, wherever it has moved since it was opened.
// Move-only; closed by the destructor.
class FolderHandle {
public:
    FolderHandle() = default;
    explicit FolderHandle(const std::string& path);
    FolderHandle(FolderHandle&& other) noexcept;
    FolderHandle& operator=(FolderHandle&& other) noexcept;
    FolderHandle(const FolderHandle&) = delete;
    FolderHandle& operator=(const FolderHandle&) = delete;
    ~FolderHandle();

    bool IsOpen() const { return m_fd >= 0; }
    // StatPath of a name in the folder (links followed).
    FileStatus StatAt(const std::string& name) const;

private:
    friend class ReadFile;
    int m_fd = -1;
};

// A file opened for reading. Move-only; closed by the destructor.
class ReadFile {
public:
    ReadFile() = default;
    explicit ReadFile(const std::string& path);
    // The file of that name in the folder.
    ReadFile(const FolderHandle& folder, const std::string& name);
    ReadFile(ReadFile&& other) noexcept;
    ReadFile& operator=(ReadFile&& other) noexcept;
    ReadFile(const ReadFile&) = delete;
    ReadFile& operator=(const ReadFile&) = delete;
    ~ReadFile();

    bool IsOpen() const { return m_fd >= 0; }
    // The size of the open file as fstat reports it now (it may change while it is read).
    std::int64_t Size() const;
    FileStatus Status() const;
    // Reads up to out.size() bytes at `offset`; returns the count read (short at the end), or -1.
    std::int64_t ReadAt(std::int64_t offset, std::span<std::uint8_t> out) const;
    // The same, taking only what is in memory now: the count read, short (0 too) where a page
    // would have to come from the disk, whose reading the system then starts without waiting for
    // it; -1 when the file system can't answer without waiting (or the read failed).
    std::int64_t ReadCachedAt(std::int64_t offset, std::span<std::uint8_t> out) const;
    // Tells the system that reads will come at a few places (a song's head and tail), so that it
    // reads only the pages asked for rather than the rest of a small file with them.
    void ReadsAtRandom() const;
    // Asks the system to start reading a range into memory, without waiting for it.
    void WillNeed(std::int64_t offset, std::int64_t length) const;

private:
    int m_fd = -1;
};

// A file opened for reading and writing in place (the tags at a song's end). Move-only; closed
// by the destructor. Nothing here truncates or creates unless asked to.
class ReadWriteFile {
public:
    enum class Mode { Existing, CreateOrTruncate };

    ReadWriteFile() = default;
    explicit ReadWriteFile(const std::string& path, Mode mode = Mode::Existing);
    ReadWriteFile(ReadWriteFile&& other) noexcept;
    ReadWriteFile& operator=(ReadWriteFile&& other) noexcept;
    ReadWriteFile(const ReadWriteFile&) = delete;
    ReadWriteFile& operator=(const ReadWriteFile&) = delete;
    ~ReadWriteFile();

    bool IsOpen() const { return m_fd >= 0; }
    std::int64_t Size() const;  // -1 on failure
    // Reads up to out.size() bytes at `offset`; returns the count read (short at the end), or -1.
    std::int64_t ReadAt(std::int64_t offset, std::span<std::uint8_t> out) const;
    // Writes all of `data` at `offset`; false when any of it could not be written.
    bool WriteAt(std::int64_t offset, std::span<const std::uint8_t> data);
    // Sets the length to `length` bytes (never negative).
    bool TruncateTo(std::int64_t length);
    // Closes the file; false when the close reported an error.
    bool Close();

private:
    int m_fd = -1;
};

struct IoResult {
    bool ok = true;
    std::string error;  // one line, for the user
};

// Reads a whole file, refusing files above `maxBytes`.
IoResult ReadWholeFile(const std::string& path, std::string& out, std::int64_t maxBytes);

// Writes `data` to a temporary file beside `path`, flushes it and renames it into place, so a
// crash never leaves the target cut short. The old file is untouched on failure.
IoResult WriteFileAtomically(const std::string& path, std::string_view data);

// WriteFileAtomically for a file written piece by piece, so that a large file need never be
// held whole in memory: the pieces go to the temporary file as they come, and Commit flushes it
// and renames it into place. A writer dropped without Commit removes its temporary file and
// leaves the target untouched.
class AtomicFileWriter {
public:
    explicit AtomicFileWriter(const std::string& path);
    AtomicFileWriter(const AtomicFileWriter&) = delete;
    AtomicFileWriter& operator=(const AtomicFileWriter&) = delete;
    ~AtomicFileWriter();

    // False once anything has failed; Commit then says why.
    bool Write(std::string_view data);
    IoResult Commit();

private:
    void Fail(std::string reason);

    std::string m_path;
    std::string m_temp;
    int m_fd = -1;
    std::string m_error;  // the first failure, for the user
    bool m_finished = false;
};

// Text of errno for messages.
std::string LastErrorText();

// Shortens the file at `path` by `bytes` from its end. Fails, changing nothing, when `bytes` is
// negative or larger than the file, so a bad count never cuts a file to nothing.
IoResult TruncateFileBy(const std::string& path, std::int64_t bytes);

// Gives the file's owner write permission when it lacks it (the permission is kept afterwards).
// True when the owner may write the file afterwards.
bool AddOwnerWritePermission(const std::string& path);

}  // namespace jk
