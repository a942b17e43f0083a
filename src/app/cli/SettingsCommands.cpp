// settings [--json]; settings set SECTION.KEY VALUE

#include <cstdio>
#include <span>
#include <string>

#include "app/CacheCodepage.h"
#include "app/CacheSaving.h"
#include "app/JsonLine.h"
#include "app/Session.h"
#include "app/SettingsStore.h"
#include "app/SettingsTable.h"
#include "app/cli/CliContext.h"
#include "app/cli/CliRegistry.h"
#include "app/cli/CommandOutput.h"

namespace jk {

namespace {

void PrintLine(const std::string& line) {
    std::fwrite(line.data(), 1, line.size(), stdout);
    std::fputc('\n', stdout);
}

std::string JsonOf(const Settings& settings, const SettingField& field) {
    JsonLine json;
    json.AddText("section", field.section).AddText("key", field.key);
    if (IsNumericKind(field.kind)) {
        json.AddNumber("value", SettingNumber(settings, field));
    } else {
        json.AddText("value", SettingText(settings, field));
    }
    return json.Text();
}

int ListSettings(CliContext& context, bool json) {
    const Settings& settings = context.StartedSession().Settings;
    for (const SettingField& field : SettingsTable()) {
        PrintLine(json ? JsonOf(settings, field)
                       : SettingName(field) + "=" + SettingText(settings, field));
    }
    return std::fflush(stdout) == 0 ? kExitOk : kExitFailed;
}

int SetSetting(CliContext& context, const std::string& name, const std::string& value) {
    const SettingLookup lookup = FindSetting(name);
    if (lookup.field == nullptr) {
        PrintError(lookup.candidates.empty() ? "unknown setting " + name + " (try --help)"
                                             : "setting " + name +
                                                   " is in more than one section; give it as "
                                                   "Section.Key (try --help)");
        return kExitUsage;
    }
    if (!context.AcquireWriteAccess()) {
        return kExitFailed;
    }
    Session& session = context.StartedSession();
    SetSettingFromText(session.Settings, *lookup.field, value);
    // The cache holds text decoded in the old tag code page: a new one empties it.
    const bool cacheMustFollow = FlushCacheOnCodepageChange(session, SettingScope::Saved);
    std::string error;
    if (!WriteINI(session.Settings, IniPath(session), &error)) {
        PrintError("cannot save the settings: " + error);
        return kExitFailed;
    }
    if (cacheMustFollow) {
        if (const IoResult saved = SaveSessionCache(session); !saved.ok) {
            PrintError("cannot save the song cache: " + saved.error);
            return kExitFailed;
        }
    }
    PrintLine(SettingName(*lookup.field) + "=" + SettingText(session.Settings, *lookup.field));
    return kExitOk;
}

int RunSettings(CliContext& context, std::span<const std::string> args) {
    if (!args.empty() && args[0] == "set") {
        if (args.size() != 3) {
            PrintError("settings set takes SECTION.KEY VALUE (try --help)");
            return kExitUsage;
        }
        return SetSetting(context, args[1], args[2]);
    }
    bool json = false;
    for (const std::string& arg : args) {
        if (arg == "--json") {
            json = true;
        } else {
            PrintError("settings: unexpected " + arg + " (try --help)");
            return kExitUsage;
        }
    }
    return ListSettings(context, json);
}

const CliRegistration kSettingsCommand{CliCommand{
    .name = "settings",
    .help =
        {
            {"settings [--json]", "print every setting as Section.Key=value, in the file's order"},
            {"settings set SECTION.KEY VALUE", "change one setting and save the settings file"},
        },
    .details =
        "The settings are shown as start-up leaves them: read from jukarra2.ini, or the\n"
        "first-run defaults when there is none, with --set overrides applied.\n"
        "With --json each setting is one object on a line:\n"
        "  {\"section\":\"Options\",\"key\":\"IntroLength\",\"value\":7}\n"
        "Numbers are JSON numbers, texts JSON strings.\n"
        "\"settings set\" converts VALUE as the settings file is read (numbers through their\n"
        "numeric value), then saves every setting of this run, --set overrides included. It\n"
        "is refused while the desktop program runs on the same data folder. A KEY that only\n"
        "one section holds may be given without its section; case does not matter.",
    .run = &RunSettings,
}};

}  // namespace

}  // namespace jk
