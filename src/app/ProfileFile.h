#pragma once

// The settings file form: "[Section]" lines and "key=value" lines below them, read and written
// the way the Windows profile calls did it. Sections and keys are found without regard to case,
// the first of duplicates wins, a value is cut to 255 characters on reading, and every line we
// write ends in CR LF. Anything else in a file (comments, garbage, binary bytes) loads without
// error and is written back untouched.

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "util/FileIo.h"

namespace jk {

class ProfileFile {
public:
    // The read buffer of the profile calls: longer values are cut to this many characters.
    static constexpr std::size_t kMaxValueChars = 255;
    // A settings file larger than this is not read (it is treated as missing).
    static constexpr std::int64_t kMaxFileBytes = std::int64_t{8} << 20;

    static ProfileFile Parse(std::string_view bytes);
    // A missing, unreadable or oversized file gives an empty profile; `error` says why, if asked.
    static ProfileFile Load(const std::string& path, std::string* error = nullptr);

    // The value of a key; "" when the section or key is absent.
    std::string GetINI(std::string_view section, std::string_view key) const;
    // Sets a key, adding the section at the end and the key after the section's last key when
    // they are missing. Line breaks in the value become blanks, so a value stays on its line.
    void PutINI(std::string_view section, std::string_view key, std::string_view value);

    bool HasSection(std::string_view section) const;
    // The file's text, CR LF after every line.
    std::string Text() const;
    IoResult Save(const std::string& path) const;

private:
    struct Line {
        std::string raw;    // the line as read or written, without its line end
        std::string key;    // empty for headers, comments and garbage
        std::string value;  // raw value, trimmed of blanks and tabs
    };
    // The lines ahead of the first header form an unnamed section that no lookup reaches; in
    // every other section the first line is the header.
    struct Section {
        std::string name;
        std::vector<Line> lines;
        std::unordered_map<std::string, std::size_t> keyIndex;  // folded key -> first line
    };

    const Section* FindSection(std::string_view name) const;
    Section* FindSection(std::string_view name);
    static void IndexKey(Section& section, std::size_t lineIndex);

    std::vector<Section> m_sections;
    std::unordered_map<std::string, std::size_t> m_sectionIndex;  // folded name -> first section
};

}  // namespace jk
