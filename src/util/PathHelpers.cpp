#include "util/PathHelpers.h"

#include <array>

#include "util/Text.h"

namespace jk {

std::string_view BareName(std::string_view path) {
    const std::size_t slash = path.find_last_of(kSep);
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

std::string_view CataloguedBareName(std::string_view path) {
    const std::size_t sep = path.find_last_of("/\\");
    return sep == std::string_view::npos ? path : path.substr(sep + 1);
}

std::string_view ParentPath(std::string_view path) {
    if (!path.empty() && path.back() == kSep) {
        path.remove_suffix(1);
    }
    const std::size_t slash = path.find_last_of(kSep);
    return slash == std::string_view::npos ? path : path.substr(0, slash);
}

std::string_view LastFolder(std::string_view path) {
    if (!path.empty() && path.back() == kSep) {
        path.remove_suffix(1);
    }
    return BareName(path);
}

std::string_view TopFolder(std::string_view path) {
    const std::size_t slash = path.find(kSep);
    return slash == std::string_view::npos ? path : path.substr(0, slash);
}

std::string_view StripExtension(std::string_view name) {
    const std::size_t dot = name.find_last_of('.');
    if (dot == std::string_view::npos || dot == 0) {
        return name;
    }
    return name.substr(0, dot);
}

std::string_view DrivePart(std::string_view path) {
    if (path.size() >= 2 && path[1] == ':') {
        return path.substr(0, 2);
    }
    if (path.empty() || path.front() != kSep) {
        return path.substr(0, 0);
    }
    // The mount roots of removable media: a prefix and the number of names below it. The path
    // must go on below the root: "/mnt/song.mp3" is a file on "/", not a drive.
    struct Root {
        std::string_view prefix;
        int depth;
    };
    static constexpr std::array<Root, 4> kRoots = {Root{"/run/media/", 2}, Root{"/media/", 2},
                                                   Root{"/mnt/", 1}, Root{"/Volumes/", 1}};
    for (const Root& root : kRoots) {
        if (!StartsWith(path, root.prefix)) {
            continue;
        }
        std::size_t end = root.prefix.size();
        for (int found = 0; found < root.depth; ++found) {
            const std::size_t slash = path.find(kSep, end);
            if (slash == std::string_view::npos || slash == end) {
                return path.substr(0, 1);  // a name missing, or nothing below the root
            }
            end = slash + 1;
        }
        return path.substr(0, end - 1);
    }
    return path.substr(0, 1);
}

std::string RelativeRoot(std::string_view path) {
    const std::string_view drive = DrivePart(path);
    std::string_view rest = path.substr(drive.size());
    if (drive == "/") {
        rest = path.substr(1);
    }
    std::string out;
    out.reserve(rest.size() + 1);
    if (rest.empty() || (rest.front() != kSep && rest.front() != '\\')) {
        out.push_back(kSep);
    }
    out.append(rest);
    return out;
}

std::string ShortPath(std::string_view path) {
    return std::string(path);
}

bool IsRealPath(std::string_view path) {
    return !path.empty() && path.front() == kSep;
}

std::string FileUri(std::string_view path) {
    static constexpr char kHex[] = "0123456789ABCDEF";
    std::string uri = "file://";
    uri.reserve(uri.size() + path.size());
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                           (c >= '0' && c <= '9') || c == '-' || c == '.' || c == '_' || c == '~' ||
                           c == '/';
        if (plain) {
            uri.push_back(c);
        } else {
            uri.push_back('%');
            uri.push_back(kHex[byte >> 4]);
            uri.push_back(kHex[byte & 0xF]);
        }
    }
    return uri;
}

std::string Quoted(std::string_view text) {
    std::string out;
    out.reserve(text.size() + 2);
    out.push_back('"');
    out.append(text);
    out.push_back('"');
    return out;
}

std::string JoinPath(std::string_view folder, std::string_view name) {
    std::string out(folder);
    if (out.empty() || out.back() != kSep) {
        out.push_back(kSep);
    }
    while (!name.empty() && name.front() == kSep) {
        name.remove_prefix(1);
    }
    out.append(name);
    return out;
}

}  // namespace jk
