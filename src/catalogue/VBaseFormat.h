#pragma once

// The VBASE container shared by cache.dat, master.dat and the drive images:
//
//   bytes 1-10   the version text ("VBASE 1.00", "VBASE 1.01"), padded with blanks to 10
//   bytes 11-12  the number of fields of a record, "13"
//   bytes 13-20  the number of records, padded on the left with blanks to 8
//   byte 21 on   the records back to back; a field is a 2-byte big-endian length and as many
//                bytes of UTF-8 text; 13 fields a record in key order (Title first, LastUsed
//                last). No terminator, checksum or padding.
//
// A text that is not valid UTF-8 (a file name made in another encoding, which a record keeps
// byte for byte) is written in an escaped form that is UTF-8 itself: a NUL, then the text with
// each byte that is not part of a UTF-8 character, and each "%", as "%" and two upper-case hex
// digits ("caf\xE9.mp3" is written "\0caf%E9.mp3"). No kept text begins with NUL (one that
// does is escaped too), so the form is told apart from a text of an older installation in a
// Windows code page, which is still read as windows-1252, and the bytes come back exactly.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "catalogue/PackedSong.h"
#include "util/FileIo.h"

namespace jk {

inline constexpr std::string_view kVBaseMark = "VBASE";
inline constexpr std::string_view kVBaseVersion100 = "VBASE 1.00";
inline constexpr std::string_view kVBaseVersion101 = "VBASE 1.01";
inline constexpr std::size_t kVBaseHeaderBytes = 20;
inline constexpr std::size_t kVBaseMaxField = 65535;

// Writing.
void AppendVBaseHeader(std::string& out, std::string_view version, std::int64_t recordCount);
// A text longer than 65535 bytes (in its escaped form where it takes one) is cut there, or a
// little before so as not to split a character or an escape.
void AppendVBaseField(std::string& out, std::string_view text);
// True when a text is written whole, not cut.
bool FitsVBaseField(std::string_view text);
void AppendVBaseRecord(std::string& out, const SongFieldViews& fields);
// The bytes AppendVBaseRecord adds for these fields.
std::size_t VBaseRecordBytes(const SongFieldViews& fields);
// Writes the record at `out`, which has room for VBaseRecordBytes(fields); returns its end.
char* WriteVBaseRecord(char* out, const SongFieldViews& fields);

// The bytes of a container, either all in memory or read from an open file in large chunks, so
// that a big file is never held whole beside the records made from it.
class VBaseInput {
public:
    explicit VBaseInput(std::string_view bytes);
    explicit VBaseInput(const ReadFile& file);
    VBaseInput(const VBaseInput&) = delete;
    VBaseInput& operator=(const VBaseInput&) = delete;

    // Makes `n` bytes from the cursor on available; false when the input ends first.
    bool Ensure(std::size_t n);
    // `n` bytes at `offset` from the cursor; Ensure(offset + n) must have succeeded.
    std::string_view Peek(std::size_t offset, std::size_t n) const;
    void Skip(std::size_t n);
    // The bytes from the cursor on that are loaded already (all of them for bytes in memory).
    std::string_view Loaded() const { return m_data.substr(m_pos); }
    // Everything from the cursor to the end (reads the rest of a file; up to `limit` bytes).
    std::string_view Rest(std::size_t limit);
    // The size of the whole input as known at the start.
    std::int64_t TotalSize() const { return m_totalSize; }

private:
    bool ReadMore(std::size_t wanted);

    const ReadFile* m_file = nullptr;
    // Filled by large reads; only the unread tail is moved to the front before the next one.
    std::unique_ptr<char[]> m_buffer;
    std::size_t m_capacity = 0;
    std::string_view m_data;
    std::size_t m_pos = 0;
    std::int64_t m_fileOffset = 0;
    std::int64_t m_totalSize = 0;
    bool m_ended = false;
};

struct VBaseHeader {
    std::int64_t fieldCount = 0;
    std::int64_t recordCount = 0;
};

// Takes the two counts from the first 20 bytes (fewer when the input is shorter); the cursor
// moves to the first record.
VBaseHeader ReadVBaseHeader(VBaseInput& input);

// Reads the next record of `fieldCount` fields into `fields` (raw bytes; fields past the 13th
// are skipped, missing ones are blank). False when a field would end beyond the input: the
// damaged case. The views hold until the next call.
bool ReadVBaseRecord(VBaseInput& input, std::int64_t fieldCount, SongFieldViews& fields);

// The most records an input could hold after its header: each field takes 2 bytes at least.
std::int64_t MaxVBaseRecords(const VBaseInput& input, std::int64_t fieldCount);

// Field texts as the readers keep them: an escaped text back to its bytes, trimmed of blanks,
// read as windows-1252 when they are not UTF-8, and Bitrate through its number, padded on the
// left with blanks to width 4.
class VBaseFieldDecoder {
public:
    // The views hold until the next call.
    const SongFieldViews& Decode(const SongFieldViews& raw);

private:
    std::array<std::string, kSongFieldCount> m_scratch;
    std::array<char, 16> m_bitrate{};
    SongFieldViews m_out{};
};

// A text of a data file: kept when it is valid UTF-8, else read as windows-1252 into `scratch`.
std::string_view DataFileText(std::string_view bytes, std::string& scratch);

}  // namespace jk
