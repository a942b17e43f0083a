#include "platform/ExecutableSearch.h"

#include <array>
#include <cstdlib>

#include <sys/stat.h>
#include <unistd.h>

namespace jk {

namespace {

bool IsExecutableFile(const std::string& path) {
    struct stat info {};
    return stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode) &&
           access(path.c_str(), X_OK) == 0;
}

}  // namespace

std::string FindExecutableOnPath(std::string_view name, std::string_view pathVariable) {
    if (name.empty() || name.find('/') != std::string_view::npos) {
        return {};
    }
    std::size_t start = 0;
    while (start <= pathVariable.size()) {
        std::size_t end = pathVariable.find(':', start);
        if (end == std::string_view::npos) {
            end = pathVariable.size();
        }
        const std::string_view folder = pathVariable.substr(start, end - start);
        if (!folder.empty()) {
            std::string candidate(folder);
            if (candidate.back() != '/') {
                candidate.push_back('/');
            }
            candidate += name;
            if (IsExecutableFile(candidate)) {
                return candidate;
            }
        }
        start = end + 1;
    }
    return {};
}

std::string FindExecutableOnPath(std::string_view name) {
    const char* path = std::getenv("PATH");
    return FindExecutableOnPath(name,
                                path == nullptr ? std::string_view() : std::string_view(path));
}

std::string FindDefaultPlayer() {
    constexpr std::array<std::string_view, 3> kPlayers = {"mpv", "audacious", "vlc"};
    for (const std::string_view player : kPlayers) {
        std::string found = FindExecutableOnPath(player);
        if (!found.empty()) {
            return found;
        }
    }
    return {};
}

}  // namespace jk
