#include "app/ProfileFile.h"

#include <algorithm>

#include "util/Codepage.h"
#include "util/StringHelpers.h"
#include "util/Text.h"
#include "util/Utf8.h"

namespace jk {

namespace {

constexpr std::string_view kUtf8Bom = "\xEF\xBB\xBF";

bool IsBlankOrTab(char c) {
    return c == ' ' || c == '\t';
}

// The profile calls skip blanks and tabs around section names, keys and values.
std::string_view TrimBlanksTabs(std::string_view text) {
    while (!text.empty() && IsBlankOrTab(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && IsBlankOrTab(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

std::string OneLine(std::string_view value) {
    std::string out;
    out.reserve(value.size());
    for (const char c : value) {
        if (c == '\r' || c == '\n') {
            out.push_back(' ');
        } else if (c != '\0') {
            out.push_back(c);
        }
    }
    return out;
}

}  // namespace

ProfileFile ProfileFile::Parse(std::string_view bytes) {
    ProfileFile profile;
    profile.m_sections.emplace_back();
    if (StartsWith(bytes, kUtf8Bom)) {
        bytes.remove_prefix(kUtf8Bom.size());
    }
    std::size_t pos = 0;
    while (pos < bytes.size()) {
        const std::size_t end = bytes.find('\n', pos);
        std::string_view line = bytes.substr(pos, end == std::string_view::npos ? end : end - pos);
        pos = end == std::string_view::npos ? bytes.size() : end + 1;
        if (!line.empty() && line.back() == '\r') {
            line.remove_suffix(1);
        }

        const std::string_view trimmed = TrimBlanksTabs(line);
        if (!trimmed.empty() && trimmed.front() == '[') {
            std::string_view name = trimmed.substr(1);
            name = name.substr(0, name.find(']'));
            Section section;
            section.name = std::string(TrimBlanksTabs(name));
            section.lines.push_back(Line{std::string(line), {}, {}});
            profile.m_sectionIndex.emplace(ToLower(section.name), profile.m_sections.size());
            profile.m_sections.push_back(std::move(section));
            continue;
        }

        Section& current = profile.m_sections.back();
        Line parsed{std::string(line), {}, {}};
        const std::size_t equals = trimmed.find('=');
        if (!trimmed.empty() && trimmed.front() != ';' && equals != std::string_view::npos) {
            parsed.key = std::string(TrimBlanksTabs(trimmed.substr(0, equals)));
            parsed.value = std::string(TrimBlanksTabs(trimmed.substr(equals + 1)));
        }
        current.lines.push_back(std::move(parsed));
        if (!current.lines.back().key.empty()) {
            IndexKey(current, current.lines.size() - 1);
        }
    }
    return profile;
}

ProfileFile ProfileFile::Load(const std::string& path, std::string* error) {
    std::string bytes;
    const IoResult read = ReadWholeFile(path, bytes, kMaxFileBytes);
    if (!read.ok) {
        if (error != nullptr) {
            *error = read.error;
        }
        return Parse({});
    }
    return Parse(bytes);
}

void ProfileFile::IndexKey(Section& section, std::size_t lineIndex) {
    section.keyIndex.emplace(ToLower(section.lines[lineIndex].key), lineIndex);
}

const ProfileFile::Section* ProfileFile::FindSection(std::string_view name) const {
    const auto found = m_sectionIndex.find(ToLower(name));
    return found == m_sectionIndex.end() ? nullptr : &m_sections[found->second];
}

ProfileFile::Section* ProfileFile::FindSection(std::string_view name) {
    const auto found = m_sectionIndex.find(ToLower(name));
    return found == m_sectionIndex.end() ? nullptr : &m_sections[found->second];
}

bool ProfileFile::HasSection(std::string_view section) const {
    return FindSection(section) != nullptr;
}

std::string ProfileFile::GetINI(std::string_view section, std::string_view key) const {
    const Section* found = FindSection(section);
    if (found == nullptr) {
        return {};
    }
    const auto line = found->keyIndex.find(ToLower(key));
    if (line == found->keyIndex.end()) {
        return {};
    }
    // A NUL ends the value as it ended the C buffer; bytes of an older Windows installation
    // are read in its code page.
    const std::string text = Utf8OrWindows1252(CutAtNull(found->lines[line->second].value));
    return std::string(CharLeft(text, kMaxValueChars));
}

void ProfileFile::PutINI(std::string_view section, std::string_view key, std::string_view value) {
    const std::string cleanValue = OneLine(value);
    const std::string cleanKey = OneLine(key);
    Section* target = FindSection(section);
    if (target == nullptr) {
        Section added;
        added.name = OneLine(section);
        added.lines.push_back(Line{"[" + added.name + "]", {}, {}});
        m_sectionIndex.emplace(ToLower(added.name), m_sections.size());
        m_sections.push_back(std::move(added));
        target = &m_sections.back();
    }

    Line line{cleanKey + "=" + cleanValue, cleanKey, std::string(TrimBlanksTabs(cleanValue))};
    const auto existing = target->keyIndex.find(ToLower(cleanKey));
    if (existing != target->keyIndex.end()) {
        target->lines[existing->second] = std::move(line);
        return;
    }
    // After the section's last key (or its header), so that trailing blank lines and comments
    // stay at its end. Only lines without keys lie behind that point, so the indexed positions
    // stay valid.
    std::size_t insertAt = target->lines.size();
    while (insertAt > 1 && target->lines[insertAt - 1].key.empty()) {
        --insertAt;
    }
    target->lines.insert(target->lines.begin() + static_cast<std::ptrdiff_t>(insertAt),
                         std::move(line));
    IndexKey(*target, insertAt);
}

std::string ProfileFile::Text() const {
    std::string out;
    for (const Section& section : m_sections) {
        for (const Line& line : section.lines) {
            out += line.raw;
            out += "\r\n";
        }
    }
    return out;
}

IoResult ProfileFile::Save(const std::string& path) const {
    return WriteFileAtomically(path, Text());
}

}  // namespace jk
