#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "util/Utf8.h"

namespace jk {
namespace {

TEST(WriteUtf8, WritesWhatAppendUtf8Appends) {
    // Every code point, the surrogates and values past U+10FFFF (written as U+FFFD) included.
    for (char32_t cp = 0; cp <= 0x110010; ++cp) {
        std::string appended;
        AppendUtf8(appended, cp);
        char written[4];
        const char* end = WriteUtf8(written, cp);
        ASSERT_EQ(std::string(written, static_cast<std::size_t>(end - written)), appended)
            << static_cast<std::uint32_t>(cp);
    }
    std::string big;
    AppendUtf8(big, 0xFFFFFFFF);
    char written[4];
    const char* end = WriteUtf8(written, 0xFFFFFFFF);
    EXPECT_EQ(std::string(written, static_cast<std::size_t>(end - written)), big);
}

}  // namespace
}  // namespace jk
