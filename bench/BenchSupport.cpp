#include "BenchSupport.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>

namespace jkbench {
namespace {

void Walk(const std::string& folder, std::vector<std::string>& out) {
    DIR* dir = opendir(folder.c_str());
    if (dir == nullptr) {
        return;
    }
    std::vector<std::string> subfolders;
    while (const dirent* entry = readdir(dir)) {
        const std::string name = entry->d_name;
        if (name == "." || name == "..") {
            continue;
        }
        const std::string path = folder + "/" + name;
        if (entry->d_type == DT_DIR) {
            subfolders.push_back(path);
        } else if (entry->d_type == DT_REG && name.size() > 4 &&
                   strcasecmp(name.c_str() + name.size() - 4, ".mp3") == 0) {
            out.push_back(path);
        }
    }
    closedir(dir);
    for (const std::string& sub : subfolders) {
        Walk(sub, out);
    }
}

}  // namespace

std::vector<std::string> CollectSongs(const std::string& root) {
    std::vector<std::string> out;
    Walk(root, out);
    return out;
}

std::string DropPageCache(const std::vector<std::string>& files) {
    ::sync();
    {
        std::ofstream drop("/proc/sys/vm/drop_caches");
        if (drop && (drop << "3\n") && drop.flush()) {
            return "page cache dropped (drop_caches)";
        }
    }
    for (const std::string& path : files) {
        const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
        if (fd >= 0) {
            ::posix_fadvise(fd, 0, 0, POSIX_FADV_DONTNEED);
            ::close(fd);
        }
    }
    return "file pages dropped (posix_fadvise; folder metadata stays cached)";
}

std::size_t ReadFloor(const std::string& path) {
    struct stat st {};
    if (::stat(path.c_str(), &st) != 0) {
        return 0;
    }
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        return 0;
    }
    char head[4096];
    char tail[256];
    std::size_t got = 0;
    got += static_cast<std::size_t>(std::max<ssize_t>(::pread(fd, head, sizeof head, 0), 0));
    const off_t at = st.st_size > 256 ? st.st_size - 256 : 0;
    got += static_cast<std::size_t>(std::max<ssize_t>(::pread(fd, tail, sizeof tail, at), 0));
    ::close(fd);
    return got;
}

void WalkSongs(const std::string& folder, const std::function<void(const std::string&)>& onSong) {
    DIR* dir = opendir(folder.c_str());
    if (dir == nullptr) {
        return;
    }
    std::vector<std::string> subfolders;
    while (const dirent* entry = readdir(dir)) {
        const char* name = entry->d_name;
        if (std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0) {
            continue;
        }
        const std::string path = folder + "/" + name;
        const std::size_t length = std::strlen(name);
        if (entry->d_type == DT_DIR) {
            subfolders.push_back(path);
        } else if (length > 4 && strcasecmp(name + length - 4, ".mp3") == 0) {
            onSong(path);
        }
    }
    closedir(dir);
    for (const std::string& sub : subfolders) {
        WalkSongs(sub, onSong);
    }
}

double CpuSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& t) {
        return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

PassResult TimePass(const std::vector<std::string>& files,
                    const std::function<void(const std::string&)>& work) {
    const double cpuStart = CpuSeconds();
    const auto start = std::chrono::steady_clock::now();
    for (const std::string& path : files) {
        work(path);
    }
    const auto stop = std::chrono::steady_clock::now();
    PassResult result;
    result.seconds = std::chrono::duration<double>(stop - start).count();
    result.cpuSeconds = CpuSeconds() - cpuStart;
    result.files = files.size();
    return result;
}

DiskBytes DiskBytesNow(const std::string& path) {
    DiskBytes bytes;
    struct stat st {};
    if (::stat(path.c_str(), &st) == 0) {
        std::ifstream stat("/sys/dev/block/" + std::to_string(major(st.st_dev)) + ":" +
                           std::to_string(minor(st.st_dev)) + "/stat");
        std::int64_t readsDone = 0;
        std::int64_t readsMerged = 0;
        std::int64_t sectors = 0;
        std::int64_t readMs = 0;
        if (stat >> readsDone >> readsMerged >> sectors >> readMs) {
            bytes.device = sectors * 512;
            bytes.requests = readsDone;
            bytes.requestMs = readMs;
        }
    }
    std::ifstream io("/proc/self/io");
    std::string key;
    std::int64_t value = 0;
    while (io >> key >> value) {
        if (key == "read_bytes:") {
            bytes.process = value;
        }
    }
    return bytes;
}

std::string RequestsText(const DiskBytes& before, const DiskBytes& after, double seconds) {
    if (before.requests < 0 || after.requests < 0 || seconds <= 0) {
        return "";
    }
    const std::int64_t requests = after.requests - before.requests;
    const double kilobytes = static_cast<double>(after.device - before.device) / 1024.0;
    char text[96];
    std::snprintf(text, sizeof text, "%lld requests of %.1f KB, %.1f in flight",
                  static_cast<long long>(requests),
                  requests > 0 ? kilobytes / static_cast<double>(requests) : 0.0,
                  static_cast<double>(after.requestMs - before.requestMs) / 1000.0 / seconds);
    return text;
}

std::string MegabytesText(std::int64_t before, std::int64_t after) {
    if (before < 0 || after < 0) {
        return "-";
    }
    char text[32];
    std::snprintf(text, sizeof text, "%.0f", static_cast<double>(after - before) / 1e6);
    return text;
}

double PeakRssMiB() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

std::string MachineNote(const std::string& path) {
    std::ostringstream note;
    std::ifstream cpuinfo("/proc/cpuinfo");
    std::string line;
    while (std::getline(cpuinfo, line)) {
        if (line.rfind("model name", 0) == 0) {
            note << line.substr(line.find(':') + 2);
            break;
        }
    }
    note << ", " << sysconf(_SC_NPROCESSORS_ONLN) << " cores, "
         << (sysconf(_SC_PHYS_PAGES) / 1024 * (sysconf(_SC_PAGESIZE) / 1024) / 1024) << " GiB";
    utsname uts{};
    if (uname(&uts) == 0) {
        note << ", Linux " << uts.release;
    }
    struct stat st {};
    if (::stat(path.c_str(), &st) == 0) {
        std::ifstream mounts("/proc/self/mountinfo");
        while (std::getline(mounts, line)) {
            std::istringstream fields(line);
            std::string id, parent, devno, root, mountPoint;
            fields >> id >> parent >> devno;
            const unsigned major = std::stoul(devno.substr(0, devno.find(':')));
            const unsigned minor = std::stoul(devno.substr(devno.find(':') + 1));
            if (makedev(major, minor) == st.st_dev) {
                fields >> root >> mountPoint;
                const std::size_t dash = line.find(" - ");
                std::istringstream rest(line.substr(dash + 3));
                std::string fsType, source;
                rest >> fsType >> source;
                note << ", " << path << " on " << fsType << " (" << source << ")";
                break;
            }
        }
    }
    return note.str();
}

}  // namespace jkbench
