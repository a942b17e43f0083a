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

// A file opened for reading. Move-only; closed by the destructor.
class ReadFile {
public:
    ReadFile() = default;
    explicit ReadFile(const std::string& path);
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

// Text of errno for messages.
std::string LastErrorText();

// Shortens the file at `path` by `bytes` from its end. Fails, changing nothing, when `bytes` is
// negative or larger than the file, so a bad count never cuts a file to nothing.
IoResult TruncateFileBy(const std::string& path, std::int64_t bytes);

// Gives the file's owner write permission when it lacks it (the permission is kept afterwards).
// True when the owner may write the file afterwards.
bool AddOwnerWritePermission(const std::string& path);

}  // namespace jk
