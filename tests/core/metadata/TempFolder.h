#pragma once

// A fresh folder under the system's temporary folder, removed with everything in it.

#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <string_view>

namespace jk::test {

class TempFolder {
public:
    TempFolder() {
        std::random_device random;
        m_path = std::filesystem::temp_directory_path() /
                 ("jk-metadata-" + std::to_string(random()) + std::to_string(random()));
        std::filesystem::create_directories(m_path);
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::permissions(m_path, std::filesystem::perms::owner_all,
                                     std::filesystem::perm_options::add, ignored);
        std::filesystem::remove_all(m_path, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    std::string Path() const { return m_path.string(); }
    std::string File(std::string_view name) const { return (m_path / name).string(); }

    std::string Write(std::string_view name, std::string_view bytes) const {
        const std::string path = File(name);
        std::ofstream out(path, std::ios::binary);
        out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        return path;
    }

    static std::string Read(const std::string& path) {
        std::ifstream in(path, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }

private:
    std::filesystem::path m_path;
};

}  // namespace jk::test
