#include "playback/MpvProtocol.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace jk {
namespace {

using namespace std::string_view_literals;

TEST(MpvProtocol, CommandsAreOneJsonLineWithAnyPathUnchanged) {
    const std::vector<MpvArg> load = {"loadfile"sv, "/m/a \"b\"\\c\nd\te\x01\xff.mp3"sv,
                                      "append"sv};
    EXPECT_EQ(MpvCommandLine(load, 7),
              "{\"command\":[\"loadfile\",\"/m/a \\\"b\\\"\\\\c\\nd\\te\\u0001\xff.mp3\","
              "\"append\"],\"request_id\":7}\n");
    const std::vector<MpvArg> mixed = {"seek"sv, 2.5, "absolute"sv, std::int64_t{-5}, true};
    EXPECT_EQ(MpvCommandLine(mixed, 1),
              "{\"command\":[\"seek\",2.5,\"absolute\",-5,true],\"request_id\":1}\n");
}

TEST(MpvProtocol, RepliesAndEventsAreRead) {
    const auto reply = ParseMpvLine(R"({"data":1.493005,"request_id":7,"error":"success"})");
    ASSERT_TRUE(reply);
    EXPECT_TRUE(reply->Ok());
    EXPECT_EQ(reply->requestId, 7);
    EXPECT_EQ(reply->data.type, MpvData::Type::Number);
    EXPECT_DOUBLE_EQ(reply->data.number, 1.493005);

    const auto text = ParseMpvLine(
        R"({"data":"A \"q\" \u00e9\ud83c\udfb5 \/ \n","request_id":2,"error":"success"})");
    ASSERT_TRUE(text);
    EXPECT_EQ(text->data.text, "A \"q\" \xc3\xa9\xf0\x9f\x8e\xb5 / \n");

    const auto nested = ParseMpvLine(
        R"({"data":{"playlist_entry_id":4,"x":[1,{"y":null}]},"request_id":3,"error":"success"})");
    ASSERT_TRUE(nested);
    EXPECT_EQ(nested->data.type, MpvData::Type::Other);

    const auto failed = ParseMpvLine(R"({"request_id":9,"error":"property unavailable"})");
    ASSERT_TRUE(failed);
    EXPECT_FALSE(failed->Ok());
    EXPECT_EQ(failed->data.type, MpvData::Type::None);

    const auto event = ParseMpvLine(R"( {"event":"playback-restart"} )");
    ASSERT_TRUE(event);
    EXPECT_EQ(event->event, "playback-restart");
    EXPECT_FALSE(event->requestId);

    const auto flags = ParseMpvLine(R"({"data":false,"request_id":1,"error":"success"})");
    ASSERT_TRUE(flags);
    EXPECT_EQ(flags->data.type, MpvData::Type::Bool);
    EXPECT_FALSE(flags->data.flag);
}

TEST(MpvProtocol, AnythingElseIsNoMessage) {
    const std::vector<std::string> junk = {
        "",
        "[]",
        "{",
        "{\"a\":}",
        "{\"a\":1,}",
        "{\"a\":1} x",
        "{\"a\":\"open",
        "{\"a\":\"\\u12\"}",
        "{\"a\":\"\\q\"}",
        "{\"a\":tru}",
        "{\"a\":1e}",
        "{\"a\":--1}",
        std::string(100, '[') + std::string(100, ']'),
        "{\"a\":" + std::string(40, '[') + std::string(40, ']') + "}",
        "{\"a\":[1 2]}",
    };
    for (const std::string& line : junk) {
        EXPECT_FALSE(ParseMpvLine(line)) << line;
    }
    // A lone surrogate becomes the replacement character; an odd request id is dropped.
    const auto odd = ParseMpvLine(R"({"data":"\ud800x","request_id":1e300,"error":"success"})");
    ASSERT_TRUE(odd);
    EXPECT_EQ(odd->data.text, "\xef\xbf\xbdx");
    EXPECT_FALSE(odd->requestId);
}

}  // namespace
}  // namespace jk
