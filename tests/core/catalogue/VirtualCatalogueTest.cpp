#include <gtest/gtest.h>

#include "catalogue/VolumeFile.h"
#include "core/catalogue/VdriveTestSupport.h"

namespace jk {
namespace {

using test::ReadBytes;
using test::ScriptedQuestions;
using test::TempFolder;
using test::VHeader;
using test::VolumeSong;
using test::VRecord;

std::string OneVolumeFile(std::string_view name) {
    return VHeader("VBASE 1.01", 1) + VRecord(VolumeSong(name, "/m/1.mp3"));
}

std::string FirstName(const VirtualCatalogue& c) {
    return c.Volumes.empty() ? std::string() : c.Volumes[0].Name;
}

TEST(LoadVirtualCacheTest, MissingMasterLoadsEmptyWithoutAQuestion) {
    TempFolder folder;
    folder.Write("master.da2", OneVolumeFile("Backup"));
    VirtualCatalogue catalogue;
    ScriptedQuestions questions;
    EXPECT_FALSE(LoadVirtualCache(catalogue, folder.Folder(), {true, true}, questions));
    EXPECT_TRUE(catalogue.Volumes.empty());
    EXPECT_TRUE(questions.asked.empty());
    EXPECT_TRUE(catalogue.LoadedWhole);
}

TEST(LoadVirtualCacheTest, QuestionsFollowADamagedFile) {
    struct Case {
        const char* what;
        bool safe;
        std::vector<bool> answers;
        bool da2;
        bool da3;
        std::string expectFirst;
        std::size_t expectAsked;
        bool beyondRepair;
    };
    const std::string damaged = OneVolumeFile("Damaged").substr(0, 30);
    const std::vector<Case> cases = {
        {"no to the backup", true, {false}, true, true, "", 1, false},
        {"yes to da2", true, {true}, true, true, "Two", 1, false},
        {"da2 damaged, yes to da3", true, {true, true}, true, true, "Three", 2, false},
        {"no backups at all", true, {}, false, false, "", 1, true},
        {"only da3", true, {true}, false, true, "Three", 1, false},
        // Without SafeCatalogue the backup is added to what loaded; the empty file counts as
        // an older form with no record.
    };
    for (const Case& c : cases) {
        TempFolder folder;
        folder.Write("master.dat", damaged);
        if (c.da2) {
            folder.Write("master.da2", std::string(c.what).find("da2 damaged") != std::string::npos
                                           ? damaged
                                           : OneVolumeFile("Two"));
        }
        if (c.da3) {
            folder.Write("master.da3", OneVolumeFile("Three"));
        }
        VirtualCatalogue catalogue;
        ScriptedQuestions questions;
        questions.answers = c.answers;
        LoadVirtualCache(catalogue, folder.Folder(), {c.safe, true}, questions);
        EXPECT_EQ(FirstName(catalogue), c.expectFirst) << c.what;
        EXPECT_EQ(questions.asked.size(), c.expectAsked) << c.what;
        EXPECT_EQ(!questions.asked.empty() && questions.asked.back().rfind("show:Error", 0) == 0,
                  c.beyondRepair)
            << c.what;
        EXPECT_FALSE(catalogue.LoadedWhole) << c.what;
    }
}

TEST(LoadVirtualCacheTest, EmptyOrForeignMasterCountsAsDamagedOnlyWithSafeCatalogue) {
    for (const std::string& bytes : {std::string(), std::string("\x01\x02garbage\nmore\n")}) {
        TempFolder folder;
        folder.Write("master.dat", bytes);
        folder.Write("master.da2", OneVolumeFile("Two"));
        VirtualCatalogue safe;
        ScriptedQuestions yes;
        yes.answers = {true};
        LoadVirtualCache(safe, folder.Folder(), {true, true}, yes);
        EXPECT_EQ(FirstName(safe), "Two");
        VirtualCatalogue plain;
        ScriptedQuestions none;
        LoadVirtualCache(plain, folder.Folder(), {false, true}, none);
        EXPECT_TRUE(none.asked.empty());
    }
}

TEST(LoadVirtualCacheTest, OlderTextFormIsReadFlat) {
    TempFolder folder;
    // count, field count, then Path LastUsed Date Title Artist Album Year Genre Comment Bitrate
    // Time Size Volume, each ended by the character 8.
    folder.Write("master.dat",
                 "1\r\n13\r\n/m/1.mp3\b20240101\b1/1/99\bT\bA\bAl\b1999\bRock\bC\b"
                 "128\b0325\b100\bOld\b\r\n");
    VirtualCatalogue catalogue;
    ScriptedQuestions questions;
    EXPECT_FALSE(LoadVirtualCache(catalogue, folder.Folder(), {true, true}, questions));
    ASSERT_EQ(catalogue.VirtualDrive.size(), 1u);
    BuildVirtualVolumes(catalogue.VirtualDrive, catalogue.Volumes);
    ASSERT_EQ(catalogue.Volumes.size(), 1u);
    EXPECT_EQ(catalogue.Volumes[0].Name, "Old");
    EXPECT_EQ(catalogue.Volumes[0].Song(0).Path, "/m/1.mp3");
}

// Three runs, each changing the catalogue: master.da2 is always the run before, da3 the one
// before that, and every file loads whole.
TEST(SaveVirtualCatalogueTest, BackupChainOverThreeRuns) {
    TempFolder folder;
    for (const char* name : {"One", "Two", "Three"}) {
        VirtualCatalogue catalogue;
        ScriptedQuestions questions;
        LoadVirtualCache(catalogue, folder.Folder(), {true, true}, questions);
        catalogue.Volumes.clear();
        catalogue.Volumes.emplace_back(name);
        catalogue.Volumes[0].Append(VolumeSong(name, "/m/1.mp3"));
        CatalogueSave save;
        save.moveBackups = SaveMovesBackups(catalogue, {true, true});
        ASSERT_TRUE(
            SaveVirtualCatalogue(catalogue, folder.Folder(), RealCatalogueFiles(), save).ok);
        catalogue.BackupsMoved = true;
        // A second save in the same run moves nothing.
        EXPECT_FALSE(SaveMovesBackups(catalogue, {true, true}));
    }
    EXPECT_EQ(ReadBytes(folder.File("master.dat")), OneVolumeFile("Three"));
    EXPECT_EQ(ReadBytes(folder.File("master.da2")), OneVolumeFile("Two"));
    EXPECT_EQ(ReadBytes(folder.File("master.da3")), OneVolumeFile("One"));
}

TEST(SaveVirtualCatalogueTest, DiskFullAndReadOnlyLeaveTheOldFilesAndNoTemporaries) {
    for (const bool readOnly : {false, true}) {
        for (const std::int64_t budget : {0, 10, 40, 200}) {
            TempFolder folder;
            folder.Write("master.dat", OneVolumeFile("Old"));
            folder.Write("master.da2", OneVolumeFile("Older"));
            VirtualCatalogue catalogue;
            catalogue.Volumes.emplace_back("New");
            catalogue.Volumes[0].Append(VolumeSong("New", "/m/1.mp3"));
            test::FaultyFiles files;
            files.readOnly = readOnly;
            files.budget = budget;
            CatalogueSave save;
            save.moveBackups = true;
            const IoResult result = SaveVirtualCatalogue(catalogue, folder.Folder(), files, save);
            EXPECT_FALSE(result.ok) << budget;
            EXPECT_EQ(ReadBytes(folder.File("master.dat")), OneVolumeFile("Old"));
            EXPECT_EQ(ReadBytes(folder.File("master.da2")), OneVolumeFile("Older"));
            EXPECT_FALSE(FileExists(folder.File("master.da3")));
            for (const std::string& name : RealCatalogueFiles().List(folder.Path())) {
                EXPECT_EQ(name.find(".saving"), std::string::npos) << name;
            }
        }
    }
}

TEST(SaveVirtualCatalogueTest, LeftoversOfAnInterruptedSaveAreRemoved) {
    TempFolder folder;
    folder.Write(".master.dat.saving", "half");
    folder.Write(".master.da2.tmp-12345", "half");
    folder.Write("keep.txt", "mine");
    RemoveSaveLeftovers(RealCatalogueFiles(), folder.Path());
    EXPECT_FALSE(FileExists(folder.File(".master.dat.saving")));
    EXPECT_FALSE(FileExists(folder.File(".master.da2.tmp-12345")));
    EXPECT_TRUE(FileExists(folder.File("keep.txt")));
}

TEST(SaveVirtualCatalogueTest, NoBackupMovesWhenMasterDidNotLoadWhole) {
    VirtualCatalogue catalogue;
    catalogue.LoadedWhole = false;
    EXPECT_FALSE(SaveMovesBackups(catalogue, {true, true}));
    EXPECT_TRUE(SaveMovesBackups(catalogue, {false, true}));
}

TEST(DiscRecordsTest, RoundTripAndDamage) {
    DiscRecords records = {{"Rock\tLive", "LABEL", "1234-ABCD", "vfat", "/media/u/L\\x", "2024"}};
    const std::string bytes = DiscsBytes(records);
    EXPECT_EQ(ParseDiscs(bytes), records);
    for (std::size_t cut = 0; cut < bytes.size(); ++cut) {
        const auto parsed = ParseDiscs(bytes.substr(0, cut));
        EXPECT_TRUE(!parsed || parsed->size() <= 1) << cut;
    }
    EXPECT_FALSE(ParseDiscs("JUKARRA DISCS 1\r\nonly\tthree\tfields\r\n"));
    EXPECT_FALSE(ParseDiscs("something else\r\n"));
    RenameDiscRecord(records, "Rock\tLive", "Pop");
    EXPECT_NE(FindDiscRecord(records, "Pop"), nullptr);
    RemoveDiscRecord(records, "Pop");
    EXPECT_TRUE(records.empty());
}

}  // namespace
}  // namespace jk
