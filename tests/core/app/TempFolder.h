#pragma once

// A fresh folder under the system's temporary folder, removed with everything in it at the end
// of the test.

#include <cstdlib>
#include <filesystem>
#include <string>

#include "util/FileIo.h"

namespace jk::test {

class TempFolder {
public:
    TempFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "jk-app-XXXXXX").string();
        if (mkdtemp(pattern.data()) != nullptr) {
            m_path = pattern + "/";
        }
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    // The folder, ending in "/".
    const std::string& Path() const { return m_path; }
    std::string File(const std::string& name) const { return m_path + name; }

    void Write(const std::string& name, const std::string& bytes) const {
        WriteFileAtomically(File(name), bytes);
    }
    std::string Read(const std::string& name) const {
        std::string bytes;
        ReadWholeFile(File(name), bytes, 1 << 24);
        return bytes;
    }

private:
    std::string m_path;
};

}  // namespace jk::test
