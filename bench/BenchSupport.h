#pragma once

// Shared pieces of the timing programs: collecting the files of a collection, dropping the page
// cache between runs, timing a pass, and peak memory.

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace jkbench {

// Every regular file ending in ".mp3" below `root`, in the order a depth-first walk meets them.
std::vector<std::string> CollectSongs(const std::string& root);

// A plain depth-first walk with readdir, calling `onSong` for each ".mp3" file: what a peer
// program does to visit a tree.
void WalkSongs(const std::string& folder, const std::function<void(const std::string&)>& onSong);

// User and system time of this process so far, in seconds.
double CpuSeconds();

// Drops the page cache (the whole machine's when we may, else each file's own pages through
// posix_fadvise). Returns a note of how it was done.
std::string DropPageCache(const std::vector<std::string>& files);

struct PassResult {
    double seconds = 0;     // wall clock
    double cpuSeconds = 0;  // user + system time of this process
    std::size_t files = 0;
    double FilesPerSecond() const { return seconds > 0 ? static_cast<double>(files) / seconds : 0; }
};

// The I/O floor of reading a song: its status, one read of 4 KB at the head and one of 256 bytes
// at the tail, nothing parsed. Gives the bytes read.
std::size_t ReadFloor(const std::string& path);

// Times one pass of `work` over all files.
PassResult TimePass(const std::vector<std::string>& files,
                    const std::function<void(const std::string&)>& work);

// Bytes read from the disk so far: by the whole block device that holds a path (field 3 of its
// /sys/dev/block/MAJOR:MINOR/stat, in sectors of 512 bytes; other processes' reads count too),
// and by this process alone (read_bytes of /proc/self/io). -1 where the system doesn't tell.
// With the bytes, the device's read requests done and the time they spent queued or in service,
// summed over the requests (milliseconds): divided by a pass's wall time, the requests in flight
// on average.
struct DiskBytes {
    std::int64_t device = -1;
    std::int64_t process = -1;
    std::int64_t requests = -1;
    std::int64_t requestMs = -1;
};
DiskBytes DiskBytesNow(const std::string& path);
// The bytes read between two readings, in MB ("-" where unknown).
std::string MegabytesText(std::int64_t before, std::int64_t after);
// The device's read requests between two readings taken `seconds` apart: how many, their
// average size, and how many were in flight on average ("" where unknown).
std::string RequestsText(const DiskBytes& before, const DiskBytes& after, double seconds);

// Peak resident memory of this process so far, in MiB.
double PeakRssMiB();

// A line describing the machine (CPU, cores, memory, kernel, disk of `path`).
std::string MachineNote(const std::string& path);

}  // namespace jkbench
