#pragma once

// A text as a JSON string, for the lines the command-line tool prints and the commands mpv is
// sent: the bytes pass as they are, only what JSON (or a line-based reader) cannot carry is
// escaped.

#include <string>
#include <string_view>

namespace jk {

// Appends `text` in double quotes: '"' and '\' escaped, \b \f \n \r \t by their short forms,
// the other control characters and DEL as \u00XX. Bytes from 0x80 are copied; the caller
// sees to it that they are UTF-8 where the reader needs it.
void AppendJsonString(std::string& out, std::string_view text);

}  // namespace jk
