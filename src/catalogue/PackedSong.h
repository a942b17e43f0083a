#pragma once

// A song record held as one heap block: the thirteen texts back to back behind their end
// offsets, and the two small integers. A blank record holds no block at all, so the blank
// slots of a damaged cache cost nothing but the pointer.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "catalogue/SongFields.h"
#include "metadata/SongInfo.h"

namespace jk {

using SongFieldViews = std::array<std::string_view, kSongFieldCount>;  // in key order

// The view of field `key` (kKeyTitle...).
inline std::string_view SongFieldView(const SongFieldViews& fields, int key) {
    return fields[static_cast<std::size_t>(key - 1)];
}

class PackedSong {
public:
    PackedSong() = default;
    explicit PackedSong(const SongInfo& song);
    PackedSong(const SongFieldViews& fields, std::int16_t track, std::int16_t reserved);
    PackedSong(PackedSong&& other) noexcept : m_block(other.m_block) { other.m_block = nullptr; }
    // Inline: an insert into the cache moves dozens of records.
    PackedSong& operator=(PackedSong&& other) noexcept {
        if (this != &other) {
            if (m_block != nullptr) {
                Free(m_block);
            }
            m_block = other.m_block;
            other.m_block = nullptr;
        }
        return *this;
    }
    PackedSong(const PackedSong&) = delete;
    PackedSong& operator=(const PackedSong&) = delete;
    ~PackedSong();

    // Key 1..13; "" for a blank record.
    std::string_view Field(int key) const;
    SongFieldViews Fields() const;
    std::int16_t Track() const;
    std::int16_t Reserved() const;
    SongInfo ToSong() const;

    // Rewrites one field: in place when the length stays, else the block is built anew.
    void SetField(int key, std::string_view text);

    friend void swap(PackedSong& a, PackedSong& b) noexcept {
        Block* t = a.m_block;
        a.m_block = b.m_block;
        b.m_block = t;
    }

private:
    struct Block;
    static Block* Build(const SongFieldViews& fields, std::int16_t track, std::int16_t reserved);
    static void Free(Block* block);

    Block* m_block = nullptr;
};

}  // namespace jk
