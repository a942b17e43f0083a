#include "metadata/TagFile.h"

namespace jk {

bool DiskTagFile::ReadAt(std::int64_t offset, std::span<std::uint8_t> out) {
    return m_file.ReadAt(offset, out) == static_cast<std::int64_t>(out.size());
}

bool DiskTagFile::WriteAt(std::int64_t offset, std::span<const std::uint8_t> data) {
    return m_file.WriteAt(offset, data);
}

TagFileByteSource::TagFileByteSource(TagFile& file) : ByteSource(file.Size()), m_file(file) {}

const std::uint8_t* TagFileByteSource::Fetch(std::int64_t offset, std::int64_t length) {
    m_block.resize(static_cast<std::size_t>(length));
    if (!m_file.ReadAt(offset, m_block)) {
        return nullptr;
    }
    return m_block.data();
}

}  // namespace jk
