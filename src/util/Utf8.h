#pragma once

// Character-level work on UTF-8 text. Widths, lengths and cuts count Unicode characters, never
// bytes, and never split a character. Invalid bytes count as one character each, so any byte
// string can be measured and cut without loss.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace jk {

// Decodes the character at `pos`, advancing `pos` past it. An invalid or truncated sequence gives
// U+FFFD and advances by one byte.
char32_t DecodeUtf8At(std::string_view text, std::size_t& pos);
void AppendUtf8(std::string& out, char32_t cp);
// AppendUtf8 into memory: writes the one to four bytes at `out` and gives the end (for loops
// that size their output once rather than append byte by byte).
char* WriteUtf8(char* out, char32_t cp);
bool IsValidUtf8(std::string_view text);
// The first position from `pos` on that holds a byte above 0x7F (text.size() when none): plain
// ASCII, what most paths and tags are made of, is passed over eight bytes at a time.
std::size_t SkipAscii(std::string_view text, std::size_t pos = 0);
bool IsAscii(std::string_view text);

std::size_t CharCount(std::string_view text);
// Byte offset of the character with 0-based index `chars`; text.size() when past the end.
std::size_t ByteOffsetOfChar(std::string_view text, std::size_t chars);

// The first `chars` characters.
std::string_view CharLeft(std::string_view text, std::size_t chars);
// The last `chars` characters.
std::string_view CharRight(std::string_view text, std::size_t chars);
// Characters from 1-based `start`, at most `length` of them (npos: to the end).
std::string_view CharMid(std::string_view text, std::size_t start,
                         std::size_t length = std::string_view::npos);

// Unicode simple case mapping, character by character.
std::string ToLower(std::string_view text);
std::string ToUpper(std::string_view text);
char32_t LowerChar(char32_t cp);
char32_t UpperChar(char32_t cp);

// Textual comparison: case folded per character.
bool EqualsNoCase(std::string_view a, std::string_view b);
int CompareNoCase(std::string_view a, std::string_view b);
// 0-based byte position of `needle` in `haystack`, compared case-insensitively; npos when absent.
std::size_t FindNoCase(std::string_view haystack, std::string_view needle, std::size_t from = 0);
bool ContainsNoCase(std::string_view haystack, std::string_view needle);

// The largest code point in the text (0 for empty text).
char32_t HighestCode(std::string_view text);

}  // namespace jk
