#include "app/JsonLine.h"

#include <cmath>

#include "util/JsonString.h"
#include "util/Text.h"
#include "util/Utf8.h"

namespace jk {

std::string JsonQuoted(std::string_view text) {
    std::string out;
    out.reserve(text.size() + 2);
    if (IsValidUtf8(text)) {
        AppendJsonString(out, text);
        return out;
    }
    std::string valid;
    valid.reserve(text.size() + 8);
    std::size_t pos = 0;
    while (pos < text.size()) {
        AppendUtf8(valid, DecodeUtf8At(text, pos));
    }
    AppendJsonString(out, valid);
    return out;
}

void JsonLine::AddName(std::string_view name) {
    if (!m_body.empty()) {
        m_body.push_back(',');
    }
    m_body += JsonQuoted(name);
    m_body.push_back(':');
}

JsonLine& JsonLine::AddText(std::string_view name, std::string_view text) {
    AddName(name);
    m_body += JsonQuoted(text);
    return *this;
}

JsonLine& JsonLine::AddInteger(std::string_view name, std::int64_t number) {
    AddName(name);
    m_body += std::to_string(number);
    return *this;
}

JsonLine& JsonLine::AddBool(std::string_view name, bool value) {
    AddName(name);
    m_body += value ? "true" : "false";
    return *this;
}

JsonLine& JsonLine::AddNumber(std::string_view name, double number) {
    AddName(name);
    m_body += std::isfinite(number) ? NumberText(number) : std::string("null");
    return *this;
}

std::string JsonLine::Text() const {
    return "{" + m_body + "}";
}

std::string SongJsonLine(const SongInfo& song) {
    JsonLine json;
    json.AddText("Title", song.Title)
        .AddText("Artist", song.Artist)
        .AddText("Album", song.Album)
        .AddText("Comment", song.Comment)
        .AddText("Genre", song.Genre)
        .AddText("Year", song.Year)
        .AddText("Bitrate", song.Bitrate)
        .AddText("Date", song.Date)
        .AddText("Size", song.Size)
        .AddText("Time", song.Time)
        .AddText("Path", song.Path)
        .AddText("Volume", song.Volume)
        .AddText("LastUsed", song.LastUsed)
        .AddInteger("Reserved", song.Reserved)
        .AddInteger("Track", song.Track);
    return json.Text();
}

}  // namespace jk
