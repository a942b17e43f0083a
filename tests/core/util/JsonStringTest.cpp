#include "util/JsonString.h"

#include <string>

#include <gtest/gtest.h>

namespace jk {
namespace {

// What JSON cannot carry is escaped, DEL too (a line reader may choke on it); the bytes of
// other text, UTF-8 or not, pass as they are.
TEST(JsonString, EscapesWhatJsonCannotCarryAndPassesTheRest) {
    const struct {
        std::string text;
        std::string json;
    } cases[] = {
        {"", "\"\""},
        {"plain text", "\"plain text\""},
        {"a \"b\" \\c", "\"a \\\"b\\\" \\\\c\""},
        {"\b\f\n\r\t", "\"\\b\\f\\n\\r\\t\""},
        {std::string("nul\0bell\x07", 9), "\"nul\\u0000bell\\u0007\""},
        {"\x1f\x7f", "\"\\u001f\\u007f\""},
        {"caf\xc3\xa9 \xff\xfe", "\"caf\xc3\xa9 \xff\xfe\""},
        {"/path/to/song.mp3", "\"/path/to/song.mp3\""},
    };
    for (const auto& c : cases) {
        std::string out = "x";
        AppendJsonString(out, c.text);
        EXPECT_EQ(out, "x" + c.json) << c.text;
    }
}

}  // namespace
}  // namespace jk
