#pragma once

// A fresh folder under the system's temporary folder, removed with everything in it at the end
// of the test, and the raw file reads and writes that tests use around it.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace jk::test {

// The whole file, or "" when it cannot be read.
inline std::string ReadBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// Writes the file as it stands, making its folders first.
inline void WriteBytes(const std::string& path, std::string_view bytes) {
    std::error_code ignored;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path(), ignored);
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

class TempFolder {
public:
    TempFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "jk-test-XXXXXX").string();
        if (::mkdtemp(pattern.data()) != nullptr) {
            m_path = pattern;
        }
    }
    ~TempFolder() {
        if (m_path.empty()) {
            return;
        }
        // A test may have taken the owner's rights away to make a write fail.
        std::error_code ignored;
        std::filesystem::permissions(m_path, std::filesystem::perms::owner_all,
                                     std::filesystem::perm_options::add, ignored);
        std::filesystem::remove_all(m_path, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    // The folder, without a "/" at the end.
    const std::string& Path() const { return m_path; }
    // The folder ending in "/", the form the program keeps its data folder in.
    std::string Folder() const { return m_path + "/"; }
    std::string File(std::string_view name) const { return m_path + "/" + std::string(name); }

    // Writes a file in the folder; gives its path.
    std::string Write(std::string_view name, std::string_view bytes) const {
        const std::string path = File(name);
        WriteBytes(path, bytes);
        return path;
    }
    std::string Read(std::string_view name) const { return ReadBytes(File(name)); }

private:
    std::string m_path;
};

}  // namespace jk::test
