#pragma once

// A small mpv behind a line channel, for tests of the mpv transport: it reads the command lines
// the transport writes, keeps a playlist, a position and a volume as mpv does, and answers with
// mpv's reply lines. It can also refuse connections or fall silent.

#include <cmath>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "playback/LineChannel.h"
#include "playback/MpvProtocol.h"
#include "util/JsonString.h"

namespace jk::test {

struct FakeMpvState {
    bool listening = true;
    bool silent = false;  // takes commands and never answers: a hung player
    int exchanges = 0;
    std::vector<std::string> commands;  // each as its words joined by blanks
    std::vector<std::string> playlist;
    int pos = -1;  // the entry playing, -1 when idle
    bool paused = false;
    double timePos = 0;
    double duration = 200;
    double volume = 100;
    bool quit = false;
};

class FakeMpvChannel : public LineChannel {
public:
    explicit FakeMpvChannel(FakeMpvState& mpv) : m_mpv(mpv) {}

    bool Connect() override { return m_mpv.listening && !m_mpv.quit; }
    void Disconnect() override {}
    ExchangeResult Exchange(std::string_view out,
                            const std::function<bool(std::string_view)>& onLine, int,
                            int) override {
        ++m_mpv.exchanges;
        if (!Connect()) {
            return ExchangeResult::Closed;
        }
        bool done = false;
        // An event first, as mpv sends them at any time.
        onLine(R"({"event":"audio-reconfig"})");
        std::size_t at = 0;
        while (at < out.size()) {
            const std::size_t end = out.find('\n', at);
            const std::string_view line = out.substr(at, end - at);
            at = end == std::string_view::npos ? out.size() : end + 1;
            const std::string reply = Answer(line);
            if (!m_mpv.silent && !done && onLine(reply)) {
                done = true;
            }
        }
        return m_mpv.silent ? ExchangeResult::TimedOut : ExchangeResult::Done;
    }

private:
    using Word = std::variant<std::string, double, bool>;

    // The words of a command line as the transport writes it.
    static std::vector<Word> Words(std::string_view line, std::int64_t& id) {
        std::vector<Word> words;
        std::size_t at = line.find('[') + 1;
        while (at < line.size() && line[at] != ']') {
            if (line[at] == ',') {
                ++at;
            } else if (line[at] == '"') {
                std::string text;
                for (++at; line[at] != '"'; ++at) {
                    if (line[at] == '\\') {
                        ++at;
                        text.push_back(line[at] == 'n' ? '\n' : line[at] == 'r' ? '\r' : line[at]);
                    } else {
                        text.push_back(line[at]);
                    }
                }
                ++at;
                words.emplace_back(text);
            } else if (line.substr(at, 4) == "true" || line.substr(at, 5) == "false") {
                const bool flag = line[at] == 't';
                at += flag ? 4 : 5;
                words.emplace_back(flag);
            } else {
                std::size_t used = 0;
                words.emplace_back(std::stod(std::string(line.substr(at)), &used));
                at += used;
            }
        }
        id = std::stoll(std::string(line.substr(line.find("\"request_id\":") + 13)));
        return words;
    }

    static std::string Text(const Word& word) {
        if (const auto* text = std::get_if<std::string>(&word)) {
            return *text;
        }
        if (const auto* number = std::get_if<double>(&word)) {
            std::string text = std::to_string(*number);
            text.erase(text.find_last_not_of('0') + 1);
            if (text.back() == '.') {
                text.pop_back();
            }
            return text;
        }
        return std::get<bool>(word) ? "true" : "false";
    }

    static std::string Quote(const std::string& text) {
        std::string out;
        AppendJsonString(out, text);
        return out;
    }

    std::string Property(const std::string& name) const {
        const bool idle = m_mpv.pos < 0;
        if (name == "idle-active") {
            return idle ? "true" : "false";
        }
        if (name == "pause") {
            return m_mpv.paused ? "true" : "false";
        }
        if (name == "playlist-pos") {
            return std::to_string(m_mpv.pos);
        }
        if (name == "playlist-count") {
            return std::to_string(m_mpv.playlist.size());
        }
        if (name == "volume") {
            return std::to_string(m_mpv.volume);
        }
        if (idle) {
            return {};
        }
        if (name == "time-pos") {
            return std::to_string(m_mpv.timePos);
        }
        if (name == "duration") {
            return std::to_string(m_mpv.duration);
        }
        if (name == "path") {
            return Quote(m_mpv.playlist[static_cast<std::size_t>(m_mpv.pos)]);
        }
        if (name == "media-title") {
            const std::string& path = m_mpv.playlist[static_cast<std::size_t>(m_mpv.pos)];
            return Quote(path.substr(path.find_last_of('/') + 1));
        }
        return {};
    }

    std::string Answer(std::string_view line) {
        std::int64_t id = 0;
        const std::vector<Word> words = Words(line, id);
        std::string joined;
        for (const Word& word : words) {
            joined += (joined.empty() ? "" : " ") + Text(word);
        }
        m_mpv.commands.push_back(joined);
        const auto reply = [id](const std::string& data, bool ok = true) {
            std::string out = "{";
            if (!data.empty()) {
                out += "\"data\":" + data + ",";
            }
            out += "\"request_id\":" + std::to_string(id) + ",\"error\":\"" +
                   (ok ? "success" : "error running command") + "\"}";
            return out;
        };
        const std::string verb = Text(words.at(0));
        const auto arg = [&](std::size_t i) { return Text(words.at(i)); };
        auto& list = m_mpv.playlist;
        if (verb == "get_property") {
            const std::string value = Property(arg(1));
            return value.empty() ? "{\"request_id\":" + std::to_string(id) +
                                       ",\"error\":\"property unavailable\"}"
                                 : reply(value);
        }
        if (verb == "set_property") {
            if (arg(1) == "pause") {
                m_mpv.paused = std::get<bool>(words.at(2));
            } else if (arg(1) == "volume") {
                m_mpv.volume = std::get<double>(words.at(2));
            }
        } else if (verb == "cycle") {
            m_mpv.paused = !m_mpv.paused;
        } else if (verb == "add") {
            m_mpv.volume = std::clamp(m_mpv.volume + std::get<double>(words.at(2)), 0.0, 130.0);
        } else if (verb == "stop") {
            m_mpv.pos = -1;
        } else if (verb == "playlist-clear") {
            // The entry playing stays.
            if (m_mpv.pos >= 0) {
                list = {list[static_cast<std::size_t>(m_mpv.pos)]};
                m_mpv.pos = 0;
            } else {
                list.clear();
            }
        } else if (verb == "loadfile" || verb == "loadlist") {
            const std::string name = verb == "loadlist" ? "list:" + arg(1) : arg(1);
            if (arg(2) == "replace") {
                if (m_mpv.pos >= 0) {
                    list[static_cast<std::size_t>(m_mpv.pos)] = name;
                } else {
                    list.insert(list.begin(), name);
                    m_mpv.pos = 0;
                }
                m_mpv.timePos = 0;
            } else {
                list.push_back(name);
            }
        } else if (verb == "playlist-play-index") {
            m_mpv.pos = static_cast<int>(std::get<double>(words.at(1)));
        } else if (verb == "playlist-next" || verb == "playlist-prev") {
            const int to = m_mpv.pos + (verb == "playlist-next" ? 1 : -1);
            if (m_mpv.pos < 0 || to < 0 || to >= static_cast<int>(list.size())) {
                return reply({}, false);
            }
            m_mpv.pos = to;
            m_mpv.timePos = 0;
        } else if (verb == "seek") {
            const double by = std::get<double>(words.at(1));
            m_mpv.timePos = arg(2) == "absolute" ? by : m_mpv.timePos + by;
        } else if (verb == "quit") {
            m_mpv.quit = true;
        }
        return reply("null");
    }

    FakeMpvState& m_mpv;
};

}  // namespace jk::test
