#pragma once

// The one table of settings: for every key of jukarra2.ini its section, name, kind, member and
// default, in the order of the file. Defaults, loading, saving and the command-line listing all
// walk this table.

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "app/Settings.h"

namespace jk {

enum class SettingKind : std::uint8_t {
    Int16,       // the numeric value of the text, rounded half to even, clamped to 16 bits
    Int32,       // likewise in 32 bits (colours among them)
    Text,        // the text as it stands
    Twips,       // window geometry: a floating-point number of twips
    NumberText,  // read as a number, held as the text of that number
};

// Reading quirks, combined as bits.
enum SettingFlag : std::uint8_t {
    kNoFlags = 0,
    kWriteOnly = 1,        // written at shutdown, never read back
    kReadTwice = 2,        // read a second time after all keys, the second read winning
    kTrueWhenNonZero = 4,  // any number but 0 reads as 1
    kOnlyAboveZero = 8,    // applied only when the number read is above 0
    kOnlyAbove100 = 16,    // applied only when the number read is above 100
};

using SettingMember =
    std::variant<std::int16_t Settings::*, std::int32_t Settings::*, double Settings::*,
                 std::string Settings::*, TextList4 Settings::*, TextList10 Settings::*,
                 TextList15 Settings::*, TemplateList Settings::*, ColumnWidths Settings::*>;

struct SettingField {
    std::string_view section;
    std::string key;           // the name written
    std::string_view readKey;  // the name read, when it is spelt otherwise; else empty
    SettingKind kind = SettingKind::Int16;
    SettingMember member;
    std::uint8_t index = 0;  // the element, for members that are arrays
    double numberDefault = 0;
    std::string_view textDefault;
    std::uint8_t flags = kNoFlags;

    std::string_view ReadName() const { return readKey.empty() ? std::string_view(key) : readKey; }
    bool Has(SettingFlag flag) const { return (flags & flag) != 0; }
};

const std::vector<SettingField>& SettingsTable();

// The member's value as text: numbers in decimal, geometry as the shortest exact text.
std::string SettingText(const Settings& settings, const SettingField& field);
// The member's value as a number, for numeric kinds (0 for text kinds).
double SettingNumber(const Settings& settings, const SettingField& field);
bool IsNumericKind(SettingKind kind);
// Sets the member from the text of the file, converted by its kind (without the reading quirks).
void SetSettingFromText(Settings& settings, const SettingField& field, std::string_view text);
void SetSettingDefault(Settings& settings, const SettingField& field);

// Finds a key by "Section.Key" or by a bare key that only one section holds, without regard to
// case. On failure `field` is null and `candidates` lists the sections' fields that share a bare
// key (empty when nothing matched).
struct SettingLookup {
    const SettingField* field = nullptr;
    std::vector<const SettingField*> candidates;
};
SettingLookup FindSetting(std::string_view name);

// "Section.Key" of a field.
std::string SettingName(const SettingField& field);

}  // namespace jk
