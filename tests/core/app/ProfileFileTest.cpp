#include "app/ProfileFile.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "support/TempFolder.h"
#include "util/Utf8.h"

namespace jk {
namespace {

using namespace std::string_literals;

TEST(ProfileFile, FindsSectionsAndKeysWithoutRegardToCase) {
    const ProfileFile file =
        ProfileFile::Parse("[Options]\r\nMediaType=3\r\n[Player]\r\nLast1=mpv\r\n");
    const std::vector<std::pair<std::pair<std::string, std::string>, std::string>> cases = {
        {{"Options", "MediaType"}, "3"}, {{"OPTIONS", "mediatype"}, "3"},
        {{"options", "Mediatype"}, "3"}, {{"player", "LAST1"}, "mpv"},
        {{"Options", "Last1"}, ""},      {{"Missing", "MediaType"}, ""},
    };
    for (const auto& [where, expected] : cases) {
        EXPECT_EQ(file.GetINI(where.first, where.second), expected)
            << where.first << "." << where.second;
    }
}

TEST(ProfileFile, FirstOfDuplicateKeysAndSectionsWins) {
    const ProfileFile file = ProfileFile::Parse(
        "[A]\nKey=first\nkey=second\n[B]\nOther=1\n[a]\nKey=third\nOnlyHere=x\n");
    EXPECT_EQ(file.GetINI("A", "Key"), "first");
    // The second [a] is never searched, as the profile calls search only the first.
    EXPECT_EQ(file.GetINI("A", "OnlyHere"), "");
}

TEST(ProfileFile, CutsValuesTo255CharactersNotBytes) {
    std::string accented;
    for (int i = 0; i < 300; ++i) {
        accented += "\xC3\xA9";  // é
    }
    const ProfileFile file =
        ProfileFile::Parse("[S]\nLong=" + accented + "\nAscii=" + std::string(256, 'x') +
                           "\nExact=" + std::string(255, 'y') + "\n");
    const std::string cut = file.GetINI("S", "Long");
    EXPECT_EQ(CharCount(cut), 255u);
    EXPECT_EQ(cut.size(), 510u);
    EXPECT_EQ(file.GetINI("S", "Ascii"), std::string(255, 'x'));
    EXPECT_EQ(file.GetINI("S", "Exact"), std::string(255, 'y'));
}

TEST(ProfileFile, AcceptsEveryLineEndAndNoFinalLineEnd) {
    for (const std::string text : {"[S]\r\nA=1\r\nB=2", "[S]\nA=1\nB=2\n", "[S]\r\nA=1\nB=2\r\n"}) {
        const ProfileFile file = ProfileFile::Parse(text);
        EXPECT_EQ(file.GetINI("S", "A"), "1");
        EXPECT_EQ(file.GetINI("S", "B"), "2");
    }
}

TEST(ProfileFile, LoadsGarbageAndBinaryBytesWithoutError) {
    // One literal, made at compile time (its embedded NUL kept by the s suffix): a chain of
    // string additions here gives GCC 12 a false -Wstringop-overflow with precompiled headers.
    const std::string text =
        "\xEF\xBB\xBF"
        "Orphan=before any section\n"
        "garbage without equals\n"
        "[S\n"
        "Open=yes\n"
        "[T]\n=no key\n;Commented=1\n"
        "Bin=a\0b\n"
        "\xFF\xFE\x01\x02\n"
        "  Spaced \t=  \t value with blanks \t \n"
        "Equals=a=b=c\n"
        "Latin=Bj\xF6rk\n"s;
    const ProfileFile file = ProfileFile::Parse(text);
    EXPECT_EQ(file.GetINI("", "Orphan"), "");
    EXPECT_EQ(file.GetINI("S", "Open"), "yes");  // an unclosed header still opens a section
    EXPECT_EQ(file.GetINI("T", ""), "");
    EXPECT_EQ(file.GetINI("T", "Commented"), "");
    EXPECT_EQ(file.GetINI("T", ";Commented"), "");
    EXPECT_EQ(file.GetINI("T", "Bin"), "a");  // a NUL ends the value
    EXPECT_EQ(file.GetINI("T", "Spaced"), "value with blanks");
    EXPECT_EQ(file.GetINI("T", "Equals"), "a=b=c");
    EXPECT_EQ(file.GetINI("T", "Latin"), "Bj\xC3\xB6rk");  // windows-1252 of an older install
    // Written back byte for byte, apart from the line ends.
    EXPECT_EQ(ProfileFile::Parse(file.Text()).Text(), file.Text());
}

TEST(ProfileFile, EmptyInputIsAnEmptyProfile) {
    EXPECT_EQ(ProfileFile::Parse("").Text(), "");
    EXPECT_EQ(ProfileFile::Parse("").GetINI("S", "K"), "");
}

TEST(ProfileFile, PutReplacesTheFirstKeyAndKeepsEverythingElse) {
    ProfileFile file =
        ProfileFile::Parse("; settings\r\n[S]\r\nA=1\r\na=2\r\nB=3\r\n\r\n[T]\r\nC=4\r\n");
    file.PutINI("s", "A", "new");
    EXPECT_EQ(file.Text(), "; settings\r\n[S]\r\nA=new\r\na=2\r\nB=3\r\n\r\n[T]\r\nC=4\r\n");
}

TEST(ProfileFile, PutAddsKeysAfterTheLastKeyAndSectionsAtTheEnd) {
    ProfileFile file = ProfileFile::Parse("[S]\nA=1\n\n;tail\n[T]\n");
    file.PutINI("S", "B", "2");
    file.PutINI("T", "C", "3");
    file.PutINI("U", "D", "4");
    file.PutINI("U", "D", "5");
    EXPECT_EQ(file.Text(), "[S]\r\nA=1\r\nB=2\r\n\r\n;tail\r\n[T]\r\nC=3\r\n[U]\r\nD=5\r\n");
    EXPECT_EQ(file.GetINI("S", "B"), "2");
    EXPECT_EQ(file.GetINI("u", "d"), "5");
}

TEST(ProfileFile, PutKeepsValuesOnTheirLine) {
    ProfileFile file = ProfileFile::Parse("");
    file.PutINI("S", "Multi", "one\r\ntwo\nthree");
    file.PutINI("S", "After", "x");
    EXPECT_EQ(file.GetINI("S", "Multi"), "one  two three");
    EXPECT_EQ(file.GetINI("S", "After"), "x");
}

TEST(ProfileFile, ReadsBackBlankEdgedValuesTrimmed) {
    // As the profile calls do: a leading blank written is not read back.
    ProfileFile file = ProfileFile::Parse("");
    file.PutINI("ColumnOrder", "Files", " 0x 1x");
    EXPECT_EQ(file.Text(), "[ColumnOrder]\r\nFiles= 0x 1x\r\n");
    EXPECT_EQ(ProfileFile::Parse(file.Text()).GetINI("ColumnOrder", "Files"), "0x 1x");
}

TEST(ProfileFile, SavesAtomicallyAndLoadsBack) {
    const test::TempFolder folder;
    ProfileFile file = ProfileFile::Parse("");
    file.PutINI("S", "K", "v");
    ASSERT_TRUE(file.Save(folder.File("p.ini")).ok);
    EXPECT_EQ(folder.Read("p.ini"), "[S]\r\nK=v\r\n");
    EXPECT_EQ(ProfileFile::Load(folder.File("p.ini")).GetINI("S", "K"), "v");

    std::string error;
    const ProfileFile missing = ProfileFile::Load(folder.File("none.ini"), &error);
    EXPECT_EQ(missing.Text(), "");
    EXPECT_FALSE(error.empty());
    EXPECT_FALSE(file.Save(folder.File("no/such/folder/p.ini")).ok);
}

}  // namespace
}  // namespace jk
