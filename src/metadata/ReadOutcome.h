#pragma once

// The result of a reading step: a value, or the run-time failure that ended the read. A song
// whose reading fails in any step is reported as missing, so the reason is only for tests and
// for tools that want to say why.

#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

namespace jk {

enum class ReadFault : std::uint8_t {
    None,
    BeforeStart,     // a read or skip that needs bytes ahead of the first byte
    PastEnd,         // a read or skip that needs bytes behind the last byte
    NegativeLength,  // a length below zero
    Overflow16,      // a value held in 16 bits left -32768..32767
    Overflow32,      // a 32-bit product or value left the 32-bit range
    DivideByZero,    // a division by a zero count
    Io,              // the file could not be opened or read
    TooShort,        // a file too small to hold a tag and a frame
};

std::string_view ReadFaultText(ReadFault fault);

template <typename T>
class Outcome {
public:
    Outcome(T value) : m_value(std::move(value)) {}  // NOLINT: implicit by design
    Outcome(ReadFault fault) : m_fault(fault) {}     // NOLINT: implicit by design

    bool Ok() const { return m_value.has_value(); }
    explicit operator bool() const { return Ok(); }
    ReadFault Fault() const { return m_fault; }
    const T& Value() const& { return *m_value; }
    T& Value() & { return *m_value; }
    T&& Value() && { return std::move(*m_value); }
    const T& operator*() const& { return *m_value; }
    T& operator*() & { return *m_value; }
    const T* operator->() const { return &*m_value; }
    T* operator->() { return &*m_value; }

private:
    std::optional<T> m_value;
    ReadFault m_fault = ReadFault::None;
};

// For steps that give nothing but can fail.
struct Done {};

}  // namespace jk
