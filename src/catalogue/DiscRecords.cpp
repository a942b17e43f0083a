#include "catalogue/DiscRecords.h"

#include <algorithm>
#include <array>

#include "util/FileIo.h"
#include "util/Utf8.h"

namespace jk {
namespace {

constexpr std::string_view kHeader = "JUKARRA DISCS 1";
constexpr std::size_t kFields = 6;
constexpr std::int64_t kMaxDiscsBytes = std::int64_t{64} << 20;

void AppendEscaped(std::string& out, std::string_view text) {
    for (const char c : text) {
        switch (c) {
            case '\t':
                out += "\\t";
                break;
            case '\n':
                out += "\\n";
                break;
            case '\r':
                out += "\\r";
                break;
            case '\\':
                out += "\\\\";
                break;
            default:
                out.push_back(c);
        }
    }
}

std::optional<std::string> Unescaped(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            out.push_back(text[i]);
            continue;
        }
        if (++i >= text.size()) {
            return std::nullopt;
        }
        switch (text[i]) {
            case 't':
                out.push_back('\t');
                break;
            case 'n':
                out.push_back('\n');
                break;
            case 'r':
                out.push_back('\r');
                break;
            case '\\':
                out.push_back('\\');
                break;
            default:
                return std::nullopt;
        }
    }
    return out;
}

}  // namespace

std::string DiscsBytes(const DiscRecords& records) {
    std::string out(kHeader);
    out += "\r\n";
    for (const DiscRecord& r : records) {
        const std::array<const std::string*, kFields> fields = {
            &r.Volume, &r.Label, &r.Uuid, &r.Type, &r.MountRoot, &r.ScanDate};
        for (std::size_t i = 0; i < kFields; ++i) {
            if (i > 0) {
                out.push_back('\t');
            }
            AppendEscaped(out, *fields[i]);
        }
        out += "\r\n";
    }
    return out;
}

std::optional<DiscRecords> ParseDiscs(std::string_view bytes) {
    DiscRecords records;
    bool first = true;
    while (!bytes.empty()) {
        std::size_t end = bytes.find('\n');
        std::string_view line = bytes.substr(0, end);
        bytes = end == std::string_view::npos ? std::string_view() : bytes.substr(end + 1);
        if (!line.empty() && line.back() == '\r') {
            line.remove_suffix(1);
        }
        if (first) {
            if (line != kHeader) {
                return std::nullopt;
            }
            first = false;
            continue;
        }
        if (line.empty()) {
            continue;
        }
        if (!IsValidUtf8(line)) {
            return std::nullopt;
        }
        std::array<std::string, kFields> fields;
        std::size_t count = 0;
        while (true) {
            const std::size_t tab = line.find('\t');
            if (count >= kFields) {
                return std::nullopt;
            }
            auto text = Unescaped(line.substr(0, tab));
            if (!text) {
                return std::nullopt;
            }
            fields[count++] = std::move(*text);
            if (tab == std::string_view::npos) {
                break;
            }
            line.remove_prefix(tab + 1);
        }
        if (count != kFields || fields[0].empty()) {
            return std::nullopt;
        }
        records.push_back({std::move(fields[0]), std::move(fields[1]), std::move(fields[2]),
                           std::move(fields[3]), std::move(fields[4]), std::move(fields[5])});
    }
    if (first) {
        return std::nullopt;
    }
    return records;
}

DiscRecords LoadDiscs(const std::string& path) {
    std::string bytes;
    if (!FileExists(path) || !ReadWholeFile(path, bytes, kMaxDiscsBytes).ok) {
        return {};
    }
    return ParseDiscs(bytes).value_or(DiscRecords{});
}

const DiscRecord* FindDiscRecord(const DiscRecords& records, std::string_view volume) {
    const auto found = std::find_if(records.begin(), records.end(),
                                    [volume](const DiscRecord& r) { return r.Volume == volume; });
    return found == records.end() ? nullptr : &*found;
}

void SetDiscRecord(DiscRecords& records, DiscRecord record) {
    for (DiscRecord& r : records) {
        if (r.Volume == record.Volume) {
            r = std::move(record);
            return;
        }
    }
    records.push_back(std::move(record));
}

void RenameDiscRecord(DiscRecords& records, std::string_view oldName, std::string_view newName) {
    for (DiscRecord& r : records) {
        if (r.Volume == oldName) {
            r.Volume = std::string(newName);
            return;
        }
    }
}

void RemoveDiscRecord(DiscRecords& records, std::string_view volume) {
    std::erase_if(records, [volume](const DiscRecord& r) { return r.Volume == volume; });
}

}  // namespace jk
