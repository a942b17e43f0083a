// Feeds bytes to the reader of mpv's reply lines, and checks that any text written into a
// command comes back from a reply unchanged.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "playback/MpvProtocol.h"
#include "util/JsonString.h"

// Called by libFuzzer, or by the replay of tests/tools/fuzz_replay.cpp.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    (void)jk::ParseMpvLine(bytes);

    std::string line = "{\"data\":";
    jk::AppendJsonString(line, bytes);
    line += ",\"request_id\":7}";
    const auto reply = jk::ParseMpvLine(line);
    if (!reply || reply->data.type != jk::MpvData::Type::Text || reply->data.text != bytes ||
        reply->requestId != 7) {
        std::abort();
    }
    return 0;
}
