#include "catalogue/PackedSong.h"

#include <cstring>
#include <new>

namespace jk {

struct PackedSong::Block {
    std::array<std::uint32_t, kSongFieldCount> ends;  // end offset of each text
    std::int16_t track;
    std::int16_t reserved;

    char* Text() { return reinterpret_cast<char*>(this + 1); }
    const char* Text() const { return reinterpret_cast<const char*>(this + 1); }

    std::string_view Field(int key) const {
        const auto i = static_cast<std::size_t>(key - 1);
        const std::uint32_t begin = i == 0 ? 0 : ends[i - 1];
        return {Text() + begin, ends[i] - begin};
    }
};

PackedSong::Block* PackedSong::Build(const SongFieldViews& fields, std::int16_t track,
                                     std::int16_t reserved) {
    std::size_t total = 0;
    for (const std::string_view field : fields) {
        total += field.size();
    }
    void* memory = ::operator new(sizeof(Block) + total);
    Block* block = new (memory) Block{};
    block->track = track;
    block->reserved = reserved;
    char* out = block->Text();
    std::uint32_t end = 0;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (!fields[i].empty()) {
            std::memcpy(out + end, fields[i].data(), fields[i].size());
        }
        end += static_cast<std::uint32_t>(fields[i].size());
        block->ends[i] = end;
    }
    return block;
}

void PackedSong::Free(Block* block) {
    if (block != nullptr) {
        block->~Block();
        ::operator delete(block);
    }
}

PackedSong::PackedSong(const SongInfo& song) {
    SongFieldViews fields;
    for (int key = 1; key <= kSongFieldCount; ++key) {
        fields[static_cast<std::size_t>(key - 1)] = SongField(song, key);
    }
    m_block = Build(fields, song.Track, song.Reserved);
}

PackedSong::PackedSong(const SongFieldViews& fields, std::int16_t track, std::int16_t reserved)
    : m_block(Build(fields, track, reserved)) {}

PackedSong::~PackedSong() {
    Free(m_block);
}

std::string_view PackedSong::Field(int key) const {
    return m_block == nullptr ? std::string_view() : m_block->Field(key);
}

SongFieldViews PackedSong::Fields() const {
    SongFieldViews fields{};
    if (m_block != nullptr) {
        for (int key = 1; key <= kSongFieldCount; ++key) {
            fields[static_cast<std::size_t>(key - 1)] = m_block->Field(key);
        }
    }
    return fields;
}

std::int16_t PackedSong::Track() const {
    return m_block == nullptr ? std::int16_t{0} : m_block->track;
}

std::int16_t PackedSong::Reserved() const {
    return m_block == nullptr ? std::int16_t{0} : m_block->reserved;
}

SongInfo PackedSong::ToSong() const {
    SongInfo song;
    if (m_block != nullptr) {
        for (int key = 1; key <= kSongFieldCount; ++key) {
            SongField(song, key) = m_block->Field(key);
        }
        song.Track = m_block->track;
        song.Reserved = m_block->reserved;
    }
    return song;
}

void PackedSong::SetField(int key, std::string_view text) {
    if (m_block != nullptr) {
        const std::string_view old = m_block->Field(key);
        if (old.size() == text.size()) {
            if (!text.empty()) {
                char* at = m_block->Text() + (old.data() - m_block->Text());
                std::memmove(at, text.data(), text.size());
            }
            return;
        }
    } else if (text.empty()) {
        return;
    }
    SongFieldViews fields = Fields();
    fields[static_cast<std::size_t>(key - 1)] = text;
    Block* rebuilt = Build(fields, Track(), Reserved());
    Free(m_block);
    m_block = rebuilt;
}

}  // namespace jk
