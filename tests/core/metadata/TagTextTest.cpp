#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "metadata/SongReadContext.h"
#include "util/Codepage.h"
#include "util/Text.h"

namespace jk {
namespace {

TEST(DigitsVal, IsValForEveryText) {
    // The short cut for plain digits must not differ from the language's Val anywhere.
    std::vector<std::string> texts = {
        "",    "0",   "00012", "123456789", "1234567890", "-12", "+7",    " 12",   "12 ",
        "1.5", "1e3", "&H1F",  "&O17",      "12a",        "a12", "99999", "32768", "0000000000012"};
    std::mt19937 random(9);
    const std::string alphabet = "0123456789 -.eE&H";
    for (int i = 0; i < 3000; ++i) {
        std::string text;
        for (int n = static_cast<int>(random() % 12); n > 0; --n) {
            text.push_back(alphabet[random() % alphabet.size()]);
        }
        texts.push_back(text);
    }
    for (const std::string& text : texts) {
        EXPECT_EQ(DigitsVal(text), Val(text)) << text;
    }
}

TEST(DecodeTagText, IsTheCodePagesOwnDecoding) {
    std::string everyByte;
    for (int b = 1; b < 256; ++b) {
        everyByte.push_back(static_cast<char>(b));
    }
    const std::vector<std::string> texts = {
        "",        "Plain ASCII title",           "Caf\xE9 del Mar", "\xC0\xC1\xC2 ascii after",
        everyByte, std::string("nul\0inside", 10)};
    for (const char* name : {"windows-1252", "windows-1251", "KOI8-R", "ISO-8859-2"}) {
        const auto page = SingleByteCodepage::Get(name);
        for (const std::string& text : texts) {
            EXPECT_EQ(DecodeTagText(*page, text), page->Decode(text)) << name << " " << text;
        }
    }
}

}  // namespace
}  // namespace jk
