#pragma once

// Shared by the catalogue tests: songs of a volume in one line, the bytes of a record, and a
// file system that fails on cue.

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "catalogue/CatalogueFiles.h"
#include "catalogue/VirtualCatalogue.h"
#include "support/TempFolder.h"

namespace jk::test {

inline SongInfo VolumeSong(std::string_view volume, std::string_view path,
                           std::string_view title = "T") {
    SongInfo song;
    song.Title = title;
    song.Artist = "A";
    song.Album = "Al";
    song.Year = "1999";
    song.Genre = "Rock";
    song.Time = "03:25";
    song.Bitrate = " 128";
    song.Date = "1/2/99 3:04:05";
    song.Size = "1048576";
    song.Path = path;
    song.Volume = volume;
    song.LastUsed = "20240101120000";
    return song;
}

inline std::string VField(std::string_view text) {
    std::string out;
    out.push_back(static_cast<char>((text.size() >> 8) & 0xFF));
    out.push_back(static_cast<char>(text.size() & 0xFF));
    out.append(text);
    return out;
}

// The bytes of a record, fields in key order (Title .. LastUsed).
inline std::string VRecord(const SongInfo& s) {
    return VField(s.Title) + VField(s.Artist) + VField(s.Album) + VField(s.Year) + VField(s.Genre) +
           VField(s.Time) + VField(s.Bitrate) + VField(s.Path) + VField(s.Comment) +
           VField(s.Size) + VField(s.Volume) + VField(s.Date) + VField(s.LastUsed);
}

inline std::string VHeader(std::string_view version, int count) {
    std::string c = std::to_string(count);
    return std::string(version) + "13" + std::string(8 - c.size(), ' ') + c;
}

// The real file system, with a write that fails after `budget` bytes (a full disk) and
// creation that fails in a read-only folder.
class FaultyFiles final : public CatalogueFiles {
public:
    std::int64_t budget = -1;  // bytes that may still be written; -1: no limit
    bool readOnly = false;

    bool Exists(const std::string& path) override { return m_real.Exists(path); }
    std::unique_ptr<FileSink> Create(const std::string& path, std::string& error) override {
        if (readOnly) {
            error = "cannot write " + path + ": Read-only file system";
            return nullptr;
        }
        auto inner = m_real.Create(path, error);
        if (!inner) {
            return nullptr;
        }
        return std::make_unique<Sink>(std::move(inner), budget);
    }
    IoResult Read(const std::string& path, std::string& out) override {
        return m_real.Read(path, out);
    }
    IoResult Rename(const std::string& from, const std::string& to) override {
        return m_real.Rename(from, to);
    }
    bool Remove(const std::string& path) override { return m_real.Remove(path); }
    void SyncFolder(const std::string& folder) override { m_real.SyncFolder(folder); }
    std::vector<std::string> List(const std::string& folder) override {
        return m_real.List(folder);
    }

private:
    class Sink final : public FileSink {
    public:
        Sink(std::unique_ptr<FileSink> inner, std::int64_t& budget)
            : m_inner(std::move(inner)), m_budget(budget) {}
        bool Write(std::string_view data) override {
            if (m_budget >= 0 && static_cast<std::int64_t>(data.size()) > m_budget) {
                m_inner->Write(data.substr(0, static_cast<std::size_t>(m_budget)));
                m_budget = 0;
                m_full = true;
                return false;
            }
            if (m_budget >= 0) {
                m_budget -= static_cast<std::int64_t>(data.size());
            }
            return m_inner->Write(data);
        }
        IoResult Finish() override {
            IoResult r = m_inner->Finish();
            if (m_full) {
                return {false, "No space left on device"};
            }
            return r;
        }

    private:
        std::unique_ptr<FileSink> m_inner;
        std::int64_t& m_budget;
        bool m_full = false;
    };
    PosixCatalogueFiles m_real;
};

// Answers with a script of yes/no and records what it was asked.
class ScriptedQuestions final : public CatalogueQuestions {
public:
    std::vector<bool> answers;
    std::vector<std::string> asked;  // titles and texts, in order
    bool AskYesNo(const UserMessage& question) override {
        asked.push_back("ask:" + question.text);
        const bool answer = next < answers.size() && answers[next];
        ++next;
        return answer;
    }
    void ShowMessage(const UserMessage& message) override {
        asked.push_back("show:" + message.title + ":" + message.text);
    }
    std::size_t next = 0;
};

}  // namespace jk::test
