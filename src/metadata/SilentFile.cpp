#include "metadata/SilentFile.h"

#include <filesystem>
#include <random>
#include <system_error>

#include "metadata/SilentMp3.h"

namespace jk {

namespace {

namespace fs = std::filesystem;

constexpr int kFolderAttempts = 16;

// A new, empty folder in `parent` that no one else uses; empty on failure.
fs::path MakePrivateFolder(const fs::path& parent, std::error_code& error) {
    std::random_device random;
    for (int attempt = 0; attempt < kFolderAttempts; ++attempt) {
        fs::path folder = parent / (".jukarra-silent-" + std::to_string(random()));
        if (fs::create_directory(folder, error)) {
            return folder;
        }
        if (error) {
            return {};
        }
    }
    error = std::make_error_code(std::errc::file_exists);
    return {};
}

}  // namespace

IoResult MakeSilentFileAt(const std::string& path, std::string_view sizeText) {
    if (path.empty() || path.back() == '/') {
        return {false, "\"" + path + "\" names no file"};
    }
    const fs::path parent = fs::path(path).parent_path();
    std::error_code error;
    const fs::path folder = MakePrivateFolder(parent.empty() ? fs::path(".") : parent, error);
    if (folder.empty()) {
        return {false, "cannot write " + path + ": " + error.message()};
    }
    std::string made;
    IoResult result = MakeSilentFile(folder.string(), sizeText, &made);
    if (result.ok) {
        fs::rename(made, path, error);
        if (error) {
            result = {false, "cannot write " + path + ": " + error.message()};
        }
    }
    fs::remove_all(folder, error);
    return result;
}

}  // namespace jk
