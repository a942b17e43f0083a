// Runs files through a fuzz program's own entry point once each, without libFuzzer, so that
// every build (the sanitizer builds too) replays the inputs that once broke a reader and the
// seeds the fuzzers start from:
//
//   replay_song_reader fuzz/seeds/fuzz_song_reader 'fuzz/crashes/song_reader-*'
//
// A folder stands for every file in it; a name ending in "*" for the files of its folder whose
// names begin with what comes before the "*". A crash fails the run; its file was named last.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> FilesOf(const std::string& argument) {
    std::vector<fs::path> files;
    std::error_code error;
    if (!argument.empty() && argument.back() == '*') {
        const fs::path pattern(argument.substr(0, argument.size() - 1));
        const std::string prefix = pattern.filename().string();
        for (const fs::directory_entry& entry :
             fs::directory_iterator(pattern.parent_path(), error)) {
            if (entry.is_regular_file() && entry.path().filename().string().starts_with(prefix)) {
                files.push_back(entry.path());
            }
        }
    } else if (fs::is_directory(argument, error)) {
        for (const fs::directory_entry& entry : fs::directory_iterator(argument, error)) {
            if (entry.is_regular_file()) {
                files.push_back(entry.path());
            }
        }
    } else {
        files.emplace_back(argument);
    }
    std::sort(files.begin(), files.end());
    return files;
}

}  // namespace

int main(int argc, char** argv) {
    std::size_t replayed = 0;
    for (int i = 1; i < argc; ++i) {
        for (const fs::path& file : FilesOf(argv[i])) {
            std::ifstream in(file, std::ios::binary);
            if (!in) {
                std::fprintf(stderr, "cannot read %s\n", file.c_str());
                return 1;
            }
            const std::string bytes{std::istreambuf_iterator<char>(in),
                                    std::istreambuf_iterator<char>()};
            std::fprintf(stderr, "%s\n", file.c_str());
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()),
                                   bytes.size());
            ++replayed;
        }
    }
    std::printf("%zu inputs replayed\n", replayed);
    return replayed > 0 ? 0 : 1;
}
