// Disc identities with real filesystems: a vfat image with a label and an ext4 image with a
// UUID, loop-mounted. Needs root, a free loop device and mkfs.vfat/mkfs.ext4; skipped, saying
// why, without them. A kernel without vfat gets an ext2 image with a label in its place.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "catalogue/DiscPresence.h"
#include "catalogue/InsertDisc.h"
#include "catalogue/VirtualCatalogue.h"
#include "platform/DiscMounts.h"

namespace jk {
namespace {

namespace fs = std::filesystem;

constexpr const char* kExtUuid = "5b1f3c2e-7d4a-4e8f-9a6b-0c1d2e3f4a5b";

bool Shell(const std::string& command) {
    return std::system((command + " >/dev/null 2>&1").c_str()) == 0;
}

bool KernelHasVfat() {
    return Shell("grep -qw vfat /proc/filesystems");
}

// Why these tests cannot run here, or "".
std::string MissingFacility() {
    if (::geteuid() != 0) {
        return "not root: loop mounts need root";
    }
    if (!Shell("losetup -f")) {
        return "no free loop device (losetup -f)";
    }
    if (!Shell("command -v mkfs.vfat")) {
        return "mkfs.vfat missing (Debian's dosfstools)";
    }
    if (!Shell("command -v mkfs.ext4")) {
        return "mkfs.ext4 missing (Debian's e2fsprogs)";
    }
    return {};
}

class LoopDiscs : public ::testing::Test {
protected:
    void SetUp() override {
        if (const std::string missing = MissingFacility(); !missing.empty()) {
            GTEST_SKIP() << "loop-mounted discs not tested: " << missing;
        }
        char images[] = "/tmp/jk-disc-images-XXXXXX";
        char mounts[] = "/mnt/jk-discs-XXXXXX";  // /tmp is no place a user browses discs
        ASSERT_NE(::mkdtemp(images), nullptr);
        m_images = images;
        ASSERT_NE(::mkdtemp(mounts), nullptr);
        m_mounts = mounts;
        m_labelledType = KernelHasVfat() ? "vfat" : "ext2";
        if (m_labelledType != "vfat") {
            std::fprintf(stderr, "note: this kernel has no vfat; the labelled disc is ext2\n");
        }
        for (const char* name : {"labelled", "ext4", "elsewhere"}) {
            fs::create_directories(m_mounts + "/" + name);
        }
        ASSERT_TRUE(
            Shell("truncate -s 16M " + m_images + "/labelled.img " + m_images + "/ext4.img"));
        ASSERT_TRUE(Shell(m_labelledType == "vfat"
                              ? "mkfs.vfat -n JKSUMMER -i 1234ABCD " + m_images + "/labelled.img"
                              : "mkfs.ext2 -q -F -L JKSUMMER " + m_images + "/labelled.img"));
        ASSERT_TRUE(Shell("mkfs.ext4 -q -F -L jkwinter -U " + std::string(kExtUuid) + " " +
                          m_images + "/ext4.img"));
        if (!Mount("labelled", "labelled") || !Mount("ext4", "ext4")) {
            GTEST_SKIP() << "loop-mounted discs not tested: mount -o loop failed here";
        }
        for (const char* name : {"labelled", "ext4"}) {
            fs::create_directories(m_mounts + "/" + name + "/Music");
            std::ofstream(m_mounts + "/" + name + "/Music/song.mp3") << "not really a song";
        }
    }

    void TearDown() override {
        for (const std::string& point : m_mounted) {
            Shell("umount " + point);
        }
        if (!m_mounts.empty()) {
            fs::remove_all(m_mounts);
        }
        if (!m_images.empty()) {
            fs::remove_all(m_images);
        }
    }

    bool Mount(const std::string& image, const std::string& at) {
        const std::string point = m_mounts + "/" + at;
        if (!Shell("mount -o loop " + m_images + "/" + image + ".img " + point)) {
            return false;
        }
        m_mounted.push_back(point);
        return true;
    }

    void Unmount(const std::string& at) {
        const std::string point = m_mounts + "/" + at;
        ASSERT_TRUE(Shell("umount " + point));
        std::erase(m_mounted, point);
    }

    const MountedDisc* Listed(const MountedDiscs& discs, const std::string& at) const {
        for (const MountedDisc& disc : discs) {
            if (disc.MountRoot == m_mounts + "/" + at) {
                return &disc;
            }
        }
        return nullptr;
    }

    std::string m_labelledType;
    std::string m_images;
    std::string m_mounts;
    std::vector<std::string> m_mounted;
};

TEST_F(LoopDiscs, ListedWithLabelUuidAndTypeWithoutUdevLinks) {
    const MountedDiscs discs = ListMountedDiscs();
    const MountedDisc* labelled = Listed(discs, "labelled");
    const MountedDisc* ext4 = Listed(discs, "ext4");
    ASSERT_NE(labelled, nullptr);
    ASSERT_NE(ext4, nullptr);
    EXPECT_EQ(labelled->Label, "JKSUMMER");
    EXPECT_EQ(labelled->Type, m_labelledType);
    if (m_labelledType == "vfat") {
        EXPECT_EQ(labelled->Uuid, "1234-ABCD");
    }
    EXPECT_EQ(ext4->Label, "jkwinter");
    EXPECT_EQ(ext4->Uuid, kExtUuid);
    EXPECT_EQ(ext4->Type, "ext4");
}

TEST_F(LoopDiscs, VolumeFoundAtAnotherRootByUuidElseLabel) {
    const MountedDiscs before = ListMountedDiscs();
    DiscRecords records;
    // The ext4 volume is known by its UUID (under a name and label that no longer match); the
    // labelled one has no UUID recorded, as an older record, and is found by its label.
    DiscRecord winter = RecordOfDisc("Winter", *Listed(before, "ext4"), "20240101120000");
    winter.Label = "relabelled since";
    records.push_back(winter);
    DiscRecord summer = RecordOfDisc("Summer", *Listed(before, "labelled"), "20240101120000");
    summer.Uuid.clear();
    summer.Label = "jksummer";
    records.push_back(summer);

    Unmount("ext4");
    ASSERT_TRUE(Mount("ext4", "elsewhere"));
    const MountedDiscs after = ListMountedDiscs();
    const MountedDisc* found = FindVolumeDisc("Winter", records, after);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->MountRoot, m_mounts + "/elsewhere");
    EXPECT_EQ(ResolveSongPath(m_mounts + "/ext4/Music/song.mp3", &records[0], *found),
              m_mounts + "/elsewhere/Music/song.mp3");
    EXPECT_TRUE(
        fs::exists(ResolveSongPath(m_mounts + "/ext4/Music/song.mp3", &records[0], *found)));
    const MountedDisc* summerDisc = FindVolumeDisc("Summer", records, after);
    ASSERT_NE(summerDisc, nullptr);
    EXPECT_EQ(summerDisc->MountRoot, m_mounts + "/labelled");
}

TEST_F(LoopDiscs, WatcherSeesMountAndUnmountWithinTwoSeconds) {
    std::atomic<int> changes = 0;
    MountWatcher watcher([&changes] { ++changes; });
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    const auto waitForChange = [&changes](int seen) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(2);
        while (changes <= seen && std::chrono::steady_clock::now() < deadline) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        return changes > seen;
    };
    int seen = changes;
    Unmount("labelled");
    EXPECT_TRUE(waitForChange(seen)) << "no word of an unmount within 2 s";
    seen = changes;
    ASSERT_TRUE(Mount("labelled", "labelled"));
    EXPECT_TRUE(waitForChange(seen)) << "no word of a mount within 2 s";
}

class RecordingQuestions final : public InsertDiscQuestions {
public:
    RetryAnswer AskRetryCancel(const UserMessage& question) override {
        asked.push_back(question.text);
        return RetryAnswer::Cancel;
    }
    bool AskYesNo(const UserMessage& question) override {
        asked.push_back(question.text);
        return false;
    }
    std::vector<std::string> asked;
};

TEST_F(LoopDiscs, InsertDiscAsksForTheAbsentOne) {
    const MountedDiscs discs = ListMountedDiscs();
    VirtualCatalogue catalogue;
    for (const auto& [name, at] : {std::pair{"Summer", "labelled"}, std::pair{"Winter", "ext4"}}) {
        VirtualVolume& volume = catalogue.Volumes.emplace_back(name);
        SongInfo song;
        song.Title = "song";
        song.Path = m_mounts + "/" + at + "/Music/song.mp3";
        song.Volume = name;
        volume.Append(song);
        catalogue.Discs.push_back(RecordOfDisc(name, *Listed(discs, at), "20240101120000"));
    }
    Unmount("ext4");
    PlayCheckSources sources;
    sources.mountedDiscs = [] { return ListMountedDiscs(); };
    sources.fileExists = [](const std::string& path) { return fs::exists(path); };
    RecordingQuestions questions;
    const PlayCheck check =
        CheckDiscsBeforePlay({m_mounts + "/ext4/Music/song.mp3"}, catalogue, sources, questions);
    EXPECT_FALSE(check.play);
    ASSERT_EQ(questions.asked.size(), 1u);
    EXPECT_EQ(questions.asked[0],
              "Please insert the disc \"Winter\" (label jkwinter) to play this song.");

    // The present one plays without a question.
    questions.asked.clear();
    const PlayCheck present = CheckDiscsBeforePlay({m_mounts + "/labelled/Music/song.mp3"},
                                                   catalogue, sources, questions);
    EXPECT_TRUE(present.play);
    EXPECT_TRUE(questions.asked.empty());
}

}  // namespace
}  // namespace jk
