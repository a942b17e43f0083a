#pragma once

// One JSON object on one line, for the command-line tool's --json output: names in the order
// added, text escaped so that any bytes (control characters, invalid UTF-8) give valid JSON.

#include <cstdint>
#include <string>
#include <string_view>

#include "metadata/SongInfo.h"

namespace jk {

// `text` as a JSON string in double quotes. Invalid UTF-8 bytes become U+FFFD.
std::string JsonQuoted(std::string_view text);

class JsonLine {
public:
    JsonLine& AddText(std::string_view name, std::string_view text);
    JsonLine& AddInteger(std::string_view name, std::int64_t number);
    JsonLine& AddBool(std::string_view name, bool value);
    // Whole numbers print without a fraction; a value that is not finite prints as null.
    JsonLine& AddNumber(std::string_view name, double number);
    // "{...}", without a line end.
    std::string Text() const;

private:
    void AddName(std::string_view name);
    std::string m_body;
};

// A song as one JSON line, with the record's field names; Reserved and Track are numbers.
std::string SongJsonLine(const SongInfo& song);

}  // namespace jk
