// tag set [--title T] [--artist A] [--album B] [--year Y] [--comment C] [--genre G] [--track N]
//     FILE...
// tag strip FILE...

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "app/Session.h"
#include "app/SongLookup.h"
#include "app/SongTagEdit.h"
#include "app/cli/CliContext.h"
#include "app/cli/CliRegistry.h"
#include "app/cli/CommandArgs.h"
#include "app/cli/CommandOutput.h"
#include "app/cli/ProgressLine.h"
#include "metadata/SongFileReader.h"
#include "metadata/TagWriter.h"
#include "util/FileIo.h"
#include "util/StringHelpers.h"

namespace jk {

namespace {

constexpr int kLargestTrack = 255;  // the track is one byte of the tag

// The changes the options ask for; false, with the usage error, when a value is bad or no
// change is asked for.
bool ReadTagChanges(const CommandArgs& parsed, TagChanges& changes, std::string& error) {
    const auto text = [&parsed](std::string_view option) -> std::optional<std::string> {
        const std::string* value = parsed.Value(option);
        return value != nullptr ? std::optional<std::string>(*value) : std::nullopt;
    };
    changes.Title = text("--title");
    changes.Artist = text("--artist");
    changes.Album = text("--album");
    changes.Year = text("--year");
    changes.Comment = text("--comment");
    changes.Genre = text("--genre");
    if (const std::string* track = parsed.Value("--track")) {
        if (track->empty() || !IsAllDigits(*track) || track->size() > 3 ||
            std::stoi(*track) > kLargestTrack) {
            error = "tag set: --track takes a number from 0 to 255, not \"" + *track + "\"";
            return false;
        }
        changes.Track = static_cast<std::int16_t>(std::stoi(*track));
    }
    if (!changes.Any()) {
        error = "tag set needs at least one field to change";
        return false;
    }
    return true;
}

// True for a file that GetSongInfo would read: a regular file of at least 132 bytes.
bool IsSongFile(const std::string& path, FileStatus& status) {
    status = StatPath(path);
    return status.exists && status.isRegular && status.size >= kSmallestSongFile;
}

int SetTags(CliContext& context, std::span<const std::string> args) {
    const CommandArgs parsed = ParseCommandArgs(
        args, {}, {"--title", "--artist", "--album", "--year", "--comment", "--genre", "--track"},
        "tag set");
    if (!parsed.error.empty()) {
        return UsageError(parsed.error);
    }
    TagChanges changes;
    std::string error;
    if (!ReadTagChanges(parsed, changes, error)) {
        return UsageError(error);
    }
    if (parsed.operands.empty()) {
        return UsageError("tag set needs at least one FILE");
    }
    if (!context.AcquireWriteAccess()) {
        return kExitFailed;
    }
    Session& session = context.StartedSession();
    SongReader reader(SongReadOptionsOf(session));
    const SingleByteCodepage* page = reader.Options().codepage.get();

    ProgressLine progress("Writing tags");
    const auto total = static_cast<std::int64_t>(parsed.operands.size());
    std::int64_t done = 0;
    bool anyFailed = false;
    for (const std::string& arg : parsed.operands) {
        progress.Update(done++, total);
        const std::string path = FullPathOf(arg);
        FileStatus status;
        // Read from the file itself, never from a cache slot that may hold another file of
        // the same name; the slot goes stale by the file's new date.
        SongInfo song =
            IsSongFile(path, status) ? reader.Read(path, FileAtHand(status)) : NonExistantSong();
        if (IsNonExistant(song)) {
            progress.Finish();
            ReportUnreadable(path);
            anyFailed = true;
            continue;
        }
        ApplyTrackSuffix(song);
        const TagWriteResult written =
            WriteSongTag(path, EditedSong(std::move(song), changes), page);
        if (!written) {
            progress.Finish();
            PrintError(TagWriteFailedText(path, written));
            anyFailed = true;
        }
    }
    progress.Finish();
    return anyFailed ? kExitFailed : kExitOk;
}

// Why stripping failed: the writer's reason when it refused, else the dialog's own words.
std::string StripFailedText(const std::string& path, const TagWriteResult& result) {
    const std::string reason = TagFaultText(result);
    return reason.empty() ? TagWriteFailedText(path) : path + ": " + reason;
}

int StripFileTags(CliContext& context, std::span<const std::string> args) {
    const CommandArgs parsed = ParseCommandArgs(args, {}, {}, "tag strip");
    if (!parsed.error.empty()) {
        return UsageError(parsed.error);
    }
    if (parsed.operands.empty()) {
        return UsageError("tag strip needs at least one FILE");
    }
    if (!context.AcquireWriteAccess()) {
        return kExitFailed;
    }
    bool anyFailed = false;
    for (const std::string& arg : parsed.operands) {
        const std::string path = FullPathOf(arg);
        FileStatus status;
        if (!IsSongFile(path, status)) {
            ReportUnreadable(path);
            anyFailed = true;
        } else if (!HasID3Tag(path) && !HasLyrics3Tag(path)) {
            PrintError(path + " has no tag to strip");
            anyFailed = true;
        } else if (const TagWriteResult stripped = StripTags(path); !stripped) {
            PrintError(StripFailedText(path, stripped));
            anyFailed = true;
        }
    }
    return anyFailed ? kExitFailed : kExitOk;
}

int RunTag(CliContext& context, std::span<const std::string> args) {
    if (args.empty()) {
        return UsageError("tag needs set or strip");
    }
    if (args[0] == "set") {
        return SetTags(context, args.subspan(1));
    }
    if (args[0] == "strip") {
        return StripFileTags(context, args.subspan(1));
    }
    return UsageError("tag: unknown " + args[0] + "; give set or strip");
}

const CliRegistration kTagCommand{CliCommand{
    .name = "tag",
    .help =
        {
            {"tag set [--FIELD TEXT]... FILE...", "change the given fields of songs' tags"},
            {"tag strip FILE...", "remove the ID3v1 tag and Lyrics3 block of songs"},
        },
    .details =
        "FIELD is title, artist, album, year, comment, genre or track.\n"
        "\"tag set\" reads each song from its file, changes the fields given and writes the tag\n"
        "back as the tag dialog does: an ID3v1 tag, or a Lyrics3 block with one behind it when\n"
        "a title, artist or album runs past 30 characters or the file has a block already.\n"
        "The \" - NN\" that a track number adds to Album in listings is not written into the\n"
        "tag. --track takes 0 (none) to 255; a track of 1 or more leaves 28 characters to the\n"
        "comment. --genre takes a genre's name; a name the genre list lacks is written as 255.\n"
        "Text is written in the TagCodepage of the settings.\n"
        "\"tag strip\" removes the tags at the end of each file; a file with none is reported.\n"
        "Both are refused while the desktop program runs on the same data folder. A tag that\n"
        "could not be written is reported as the tag dialog reports it, with the reason when\n"
        "the tag itself is refused (a Lyrics3 field over 32767 bytes, say); the other files\n"
        "are still done, and the exit status is then 2.",
    .run = &RunTag,
}};

}  // namespace

}  // namespace jk
