#include "metadata/SilentMp3.h"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <span>
#include <vector>

#include "metadata/SongInfo.h"
#include "metadata/TagWriter.h"
#include "util/PathHelpers.h"
#include "util/Text.h"

namespace jk {
namespace {

// Blocks of frames are doubled up to at least this many bytes before they are written.
constexpr std::size_t kBlockBytes = 8192;
// A frame holds 1152 samples at 44100 Hz.
constexpr std::size_t kFrameSamples = 1152;
constexpr std::size_t kSampleRate = 44100;
// The largest size a silent file may be asked for (the file layer's 32-bit lengths).
constexpr double kMaxSilentBytes = 2147483647.0;

std::array<std::uint8_t, kSilentFrameBytes> BuildFrame() {
    std::array<std::uint8_t, kSilentFrameBytes> frame{};
    frame.fill(255);
    for (std::size_t i = 0; i < 36; ++i) {
        frame[i] = 0;
    }
    frame[0] = 255;
    frame[1] = 251;
    frame[2] = 144;
    frame[3] = 68;
    frame[9] = 75;
    frame[16] = 9;
    frame[17] = 96;
    frame[23] = 1;
    frame[24] = 44;
    frame[31] = 37;
    frame[32] = 128;
    return frame;
}

// Replaces the file at `path` with the frames `writeFrames` writes, then tags it.
IoResult WriteSilence(const std::string& path,
                      const std::function<bool(ReadWriteFile&)>& writeFrames, const SongInfo& tag) {
    if (FileExists(path)) {
        AddOwnerWritePermission(path);
        if (std::remove(path.c_str()) != 0) {
            return {false, "cannot replace " + path + ": " + LastErrorText()};
        }
    }
    ReadWriteFile file(path, ReadWriteFile::Mode::CreateOrTruncate);
    if (!file.IsOpen()) {
        return {false, "cannot create " + path + ": " + LastErrorText()};
    }
    const auto fail = [&](const std::string& what) {
        IoResult result{false, what + " " + path + ": " + LastErrorText()};
        file.Close();
        std::remove(path.c_str());
        return result;
    };
    if (!writeFrames(file)) {
        return fail("cannot write");
    }
    if (!file.Close()) {
        return fail("cannot close");
    }
    if (!WriteSongTag(path, tag)) {
        return {false, "cannot write the tag of " + path};
    }
    return {};
}

// One frame, then blocks of frames until the file holds at least `targetBytes`.
bool WriteFramesUpTo(ReadWriteFile& file, double targetBytes) {
    const auto& frame = SilentFrame();
    if (!file.WriteAt(0, frame)) {
        return false;
    }
    std::vector<std::uint8_t> block(frame.begin(), frame.end());
    while (block.size() < kBlockBytes) {
        block.insert(block.end(), block.begin(), block.end());
    }
    auto length = static_cast<std::int64_t>(frame.size());
    while (static_cast<double>(length) < targetBytes) {
        if (!file.WriteAt(length, block)) {
            return false;
        }
        length += static_cast<std::int64_t>(block.size());
    }
    return true;
}

// "silent.mp3" of `count` frames, written a block at a time.
IoResult WriteSilentMp3(const std::string& folder, std::size_t count) {
    SongInfo tag;
    tag.Title = "Sound of Silence";
    tag.Artist = "Jukarra2";
    tag.Comment = "Have a nice day =)";
    const auto writeFrames = [count](ReadWriteFile& file) {
        constexpr std::size_t kFramesPerBlock = 256;
        std::vector<std::uint8_t> block;
        block.reserve(kSilentFrameBytes * kFramesPerBlock);
        std::int64_t offset = 0;
        for (std::size_t written = 0; written < count;) {
            const std::size_t frames = std::min(kFramesPerBlock, count - written);
            block.clear();
            for (std::size_t i = 0; i < frames; ++i) {
                block.insert(block.end(), SilentFrame().begin(), SilentFrame().end());
            }
            if (!file.WriteAt(offset, block)) {
                return false;
            }
            offset += static_cast<std::int64_t>(block.size());
            written += frames;
        }
        return true;
    };
    return WriteSilence(JoinPath(folder, "silent.mp3"), writeFrames, tag);
}

}  // namespace

const std::array<std::uint8_t, kSilentFrameBytes>& SilentFrame() {
    static const std::array<std::uint8_t, kSilentFrameBytes> frame = BuildFrame();
    return frame;
}

IoResult MakeSilentFile(const std::string& folder, std::string_view sizeText,
                        std::string* madePath) {
    const std::string_view size = Trim(sizeText);
    if (size.find('/') != std::string_view::npos || size.find('\0') != std::string_view::npos) {
        return {false, "the size \"" + std::string(size) + "\" can't be part of a file name"};
    }
    const double bytes = Val(size) * 1024.0;
    if (bytes > kMaxSilentBytes) {
        return {false, "a silent file can hold at most 2 GB"};
    }
    const std::string path = JoinPath(folder, std::string(size) + "KB.mp3");
    if (madePath != nullptr) {
        *madePath = path;
    }
    SongInfo tag;
    tag.Title = "Sound of Silence";
    tag.Artist = "Marlow & Thane";
    tag.Album = "Ratio Sites Suck!";
    tag.Comment = "Have a nice day =)";
    tag.Year = "1999";
    return WriteSilence(
        path, [bytes](ReadWriteFile& file) { return WriteFramesUpTo(file, bytes); }, tag);
}

IoResult MakeSilentMP3(const std::string& folder) {
    return WriteSilentMp3(folder, kSilentMp3Frames);
}

IoResult MakeSilentMP3(const std::string& folder, std::int32_t seconds) {
    return WriteSilentMp3(folder, SilentFramesFor(seconds));
}

std::size_t SilentFramesFor(std::int32_t seconds) {
    const auto clamped = static_cast<std::size_t>(std::clamp<std::int32_t>(seconds, 1, 3600));
    return (clamped * kSampleRate + kFrameSamples - 1) / kFrameSamples;
}

}  // namespace jk
