#pragma once

// The file as the tag writer sees it: positioned reads and writes and a length that can be cut.
// The writer's rules run on this seam, so that a test can make any step fail.

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "metadata/ByteSource.h"
#include "util/FileIo.h"

namespace jk {

class TagFile {
public:
    virtual ~TagFile() = default;
    virtual std::int64_t Size() const = 0;  // -1 when it can't be had
    // Exactly out.size() bytes at `offset`, or false.
    virtual bool ReadAt(std::int64_t offset, std::span<std::uint8_t> out) = 0;
    virtual bool WriteAt(std::int64_t offset, std::span<const std::uint8_t> data) = 0;
    virtual bool TruncateTo(std::int64_t length) = 0;
};

// A file on disk, opened for reading and writing.
class DiskTagFile final : public TagFile {
public:
    explicit DiskTagFile(const std::string& path) : m_file(path) {}
    bool IsOpen() const { return m_file.IsOpen(); }
    bool Close() { return m_file.Close(); }

    std::int64_t Size() const override { return m_file.Size(); }
    bool ReadAt(std::int64_t offset, std::span<std::uint8_t> out) override;
    bool WriteAt(std::int64_t offset, std::span<const std::uint8_t> data) override;
    bool TruncateTo(std::int64_t length) override { return m_file.TruncateTo(length); }

private:
    ReadWriteFile m_file;
};

// The readers' view of a tag file, so that the writer finds tags by the readers' own rules.
class TagFileByteSource final : public ByteSource {
public:
    explicit TagFileByteSource(TagFile& file);

protected:
    const std::uint8_t* Fetch(std::int64_t offset, std::int64_t length) override;

private:
    TagFile& m_file;
    std::vector<std::uint8_t> m_block;
};

}  // namespace jk
