#include "platform/DataFolder.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

#include <unistd.h>

#include "platform/UserFolders.h"
#include "util/FileIo.h"

namespace jk {

namespace {

constexpr std::string_view kIniName = "jukarra2.ini";

std::string EnvironmentValue(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string() : std::string(value);
}

std::string EnvironmentHomeFolder() {
    std::string home = EnvironmentValue("HOME");
    return home.empty() ? AccountHomeFolder() : home;
}

std::string ExecutableFolder() {
    std::error_code error;
    const std::filesystem::path exe = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::string() : exe.parent_path().string();
}

std::string WithSlash(std::string path) {
    if (path.empty() || path.back() != '/') {
        path.push_back('/');
    }
    return path;
}

}  // namespace

std::string ChooseDataFolder(const DataFolderInputs& inputs) {
    if (!inputs.explicitFolder.empty()) {
        return inputs.explicitFolder;
    }
    if (!inputs.jukarraHome.empty()) {
        return inputs.jukarraHome;
    }
    if (!inputs.executableFolder.empty() && inputs.executableFolderHoldsIni) {
        return inputs.executableFolder;
    }
    std::string dataHome = inputs.xdgDataHome;
    if (dataHome.empty() || dataHome.front() != '/') {
        dataHome = WithSlash(inputs.home) + ".local/share";
    }
    return WithSlash(dataHome) + "jukarra";
}

DataFolderInputs CurrentDataFolderInputs(std::string_view explicitFolder) {
    DataFolderInputs inputs;
    inputs.explicitFolder = std::string(explicitFolder);
    inputs.jukarraHome = EnvironmentValue("JUKARRA_HOME");
    inputs.executableFolder = ExecutableFolder();
    if (!inputs.executableFolder.empty()) {
        std::error_code error;
        inputs.executableFolderHoldsIni = std::filesystem::is_regular_file(
            std::filesystem::path(inputs.executableFolder) / kIniName, error);
    }
    inputs.xdgDataHome = EnvironmentValue("XDG_DATA_HOME");
    inputs.home = EnvironmentHomeFolder();
    return inputs;
}

DataFolderResult PrepareDataFolder(const std::string& folder) {
    DataFolderResult result;
    std::error_code error;
    std::filesystem::path path = std::filesystem::absolute(folder, error);
    if (error) {
        result.error = "cannot find the data folder " + folder + ": " + error.message();
        return result;
    }
    path = path.lexically_normal();
    std::string text = path.string();
    while (text.size() > 1 && text.back() == '/') {
        text.pop_back();
    }
    if (!std::filesystem::exists(text, error)) {
        std::filesystem::create_directories(text, error);
        if (error) {
            result.error = "cannot create the data folder " + text + ": " + error.message();
            return result;
        }
    }
    if (!std::filesystem::is_directory(text, error)) {
        result.error = "the data folder " + text + " is not a folder";
        return result;
    }
    if (access(text.c_str(), W_OK | X_OK) != 0) {
        result.error = "cannot write in the data folder " + text + ": " + LastErrorText();
        return result;
    }
    result.ok = true;
    result.path = WithSlash(text);
    return result;
}

DataFolderResult OpenDataFolder(std::string_view explicitFolder) {
    return PrepareDataFolder(ChooseDataFolder(CurrentDataFolderInputs(explicitFolder)));
}

}  // namespace jk
