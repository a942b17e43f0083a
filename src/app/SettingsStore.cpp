#include "app/SettingsStore.h"

#include "app/SettingsTable.h"
#include "util/Text.h"

namespace jk {

namespace {

bool IsCheckKey(const SettingField& field) {
    return field.member == SettingMember(&Settings::Check);
}

bool IsColumnWidth(const SettingField& field) {
    return std::holds_alternative<ColumnWidths Settings::*>(field.member);
}

void ReadField(Settings& settings, const SettingField& field, const ProfileFile& file) {
    const std::string text = file.GetINI(field.section, field.ReadName());
    if (field.Has(kOnlyAboveZero) && !(Val(text) > 0)) {
        return;
    }
    if (field.Has(kOnlyAbove100) && !(Val(text) > 100)) {
        return;
    }
    if (field.Has(kTrueWhenNonZero)) {
        SetSettingFromText(settings, field, Val(text) != 0 ? "1" : "0");
        return;
    }
    SetSettingFromText(settings, field, text);
}

std::string TextToWrite(const Settings& settings, const SettingField& field) {
    if (field.member == SettingMember(&Settings::State)) {
        return settings.State == 2 ? "2" : "0";
    }
    if (IsColumnWidth(field)) {
        // A hidden column (width 0 or 1) is stored as 1.
        const double width = SettingNumber(settings, field);
        return width > 1 ? NumberText(width) : "1";
    }
    return SettingText(settings, field);
}

}  // namespace

void LoadDefaults(Settings& settings, std::string_view firstPlayerPath) {
    for (const SettingField& field : SettingsTable()) {
        SetSettingDefault(settings, field);
    }
    if (!firstPlayerPath.empty()) {
        settings.PlayerExes[1] = std::string(firstPlayerPath);
    }
}

bool LoadINI(Settings& settings, const ProfileFile& file) {
    if (!(Val(file.GetINI("INIexists", "Check")) > 0)) {
        return false;
    }
    const auto& table = SettingsTable();
    for (const SettingField& field : table) {
        if (!field.Has(kWriteOnly)) {
            ReadField(settings, field, file);
        }
    }
    for (const SettingField& field : table) {
        if (field.Has(kReadTwice)) {
            ReadField(settings, field, file);
        }
    }
    return true;
}

void WriteINI(const Settings& settings, ProfileFile& file) {
    for (const SettingField& field : SettingsTable()) {
        if (!IsCheckKey(field)) {
            file.PutINI(field.section, field.key, TextToWrite(settings, field));
        }
    }
    file.PutINI("INIexists", "Check", "1");
}

bool WriteINI(const Settings& settings, const std::string& iniPath, std::string* error) {
    ProfileFile file = ProfileFile::Load(iniPath);
    WriteINI(settings, file);
    const IoResult saved = file.Save(iniPath);
    if (!saved.ok && error != nullptr) {
        *error = saved.error;
    }
    return saved.ok;
}

}  // namespace jk
