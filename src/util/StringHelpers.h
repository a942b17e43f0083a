#pragma once

// The small string routines every part calls. Widths and positions count characters.

#include <cstdint>
#include <string>
#include <string_view>

namespace jk {

// The text up to the first NUL; the whole if none.
std::string_view CutAtNull(std::string_view text);
// Cuts the part up to the first NUL from the front of `text` (the NUL goes too) and returns it.
std::string TakeNullField(std::string& text);
// Trims, then pads on the right with blanks or cuts to `width` characters.
std::string PadField(std::string_view text, std::size_t width);
// No trimming: cut to `width` from the left, or blanks added on the right (PadRight) or left.
void PadRight(std::string& text, std::size_t width);
void PadLeft(std::string& text, std::size_t width);
// The text less its first `n` characters; empty if `n` exceeds the length.
std::string_view DropLeft(std::string_view text, std::size_t n);
// Characters `first` to `last`, 1-based and inclusive.
std::string_view MidRange(std::string_view text, std::size_t first, std::size_t last);
// First character upper-cased, the rest as it stands.
std::string UpperFirst(std::string_view text);
// True when every character lies between "0" and "9"; true for empty text.
bool IsAllDigits(std::string_view text);
// Every character equal to `find` becomes `replacement` (which may be longer or empty). A
// `find` of more than one character matches nothing.
std::string ReplaceChar(std::string_view text, std::string_view find, std::string_view replacement);
// 1-based character position of `find` in `text`, binary comparison; 0 when absent.
std::size_t InStrSafe(std::string_view find, std::string_view text);
// A colour held as a 24-bit blue-green-red number, as "#RRGGBB" in double quotes, or plain.
std::string ColorToHtml(std::int32_t color);
std::string ColorToHtmlPlain(std::int32_t color);

}  // namespace jk
