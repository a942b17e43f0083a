// silent [--size KB] FILE

#include <span>
#include <string>

#include "app/cli/CliContext.h"
#include "app/cli/CliRegistry.h"
#include "app/cli/CommandArgs.h"
#include "app/cli/CommandOutput.h"
#include "metadata/SilentFile.h"
#include "util/StringHelpers.h"
#include "util/Text.h"

namespace jk {

namespace {

// The size field of the Silent MP3 Wizard starts at this.
constexpr std::string_view kDefaultSizeKb = "5000";

int RunSilent(CliContext& /*context*/, std::span<const std::string> args) {
    const CommandArgs parsed = ParseCommandArgs(args, {}, {"--size"}, "silent");
    if (!parsed.error.empty()) {
        return UsageError(parsed.error);
    }
    if (parsed.operands.size() != 1) {
        return UsageError("silent takes one FILE");
    }
    const std::string* given = parsed.Value("--size");
    const std::string size(given != nullptr ? Trim(*given) : kDefaultSizeKb);
    if (size.empty() || !IsAllDigits(size)) {
        return UsageError("silent: --size takes a whole number of KB, not \"" + size + "\"");
    }
    const IoResult made = MakeSilentFileAt(FullPathOf(parsed.operands[0]), size);
    if (!made.ok) {
        PrintError(made.error);
        return kExitFailed;
    }
    return kExitOk;
}

const CliRegistration kSilentCommand{CliCommand{
    .name = "silent",
    .help =
        {
            {"silent [--size KB] FILE", "write a silent MP3 of at least KB kilobytes (5000)"},
        },
    .details =
        "Writes FILE as the Silent MP3 Wizard writes its files: one 418-byte MPEG-1 Layer III\n"
        "frame of silence (128 kbit/s, 44100 Hz), then frames until the file holds at least KB\n"
        "times 1024 bytes (it may pass that by up to 13376 bytes), then an ID3v1 tag: \"Sound of\n"
        "Silence\" by \"Marlow & Thane\" from \"Ratio Sites Suck!\", 1999. --size 0 gives one\n"
        "frame and the tag. An existing FILE is replaced. The largest size is 2097151 KB.",
    .run = &RunSilent,
}};

}  // namespace

}  // namespace jk
