#include "finders/SelectionWizard.h"

#include "finders/SearchHistory.h"
#include "util/Utf8.h"

namespace jk {

const std::array<SelectField, kSelectFieldCount>& SelectFields() {
    static constexpr std::array<SelectField, kSelectFieldCount> kFields = {{
        {"SearchTitle", "Title", Column::Title},
        {"SearchArtist", "Artist", Column::Artist},
        {"SearchAlbum", "Album", Column::Album},
        {"SearchYear", "Year", Column::Year},
        {"SearchGenre", "Genre", Column::Genre},
        {"SearchTime", "Time", Column::Time},
        {"SearchBitrate", "Bitrate", Column::Bitrate},
        {"SearchFilename", "Filename", Column::Filename},
        {"SearchComment", "Comment", Column::Comment},
    }};
    return kFields;
}

SelectionChoice InitialSelection(const Settings& settings) {
    SelectionChoice choice;
    choice.Text = settings.Selects[1];
    choice.Fields = ParseFieldFlags(settings.SelectOptions, kSelectFieldCount);
    switch (settings.SelectMode) {
        case 1:
            choice.Window = SelectWindow::Playlist;
            break;
        case 2:
            choice.Window = SelectWindow::Both;
            break;
        default:
            choice.Window = SelectWindow::Files;
            break;
    }
    choice.CaseSensitive = settings.SelectCase != 0;
    choice.Retain = settings.SaveSelect != 0;
    return choice;
}

std::size_t SelectRows(RowList& rows, const TextQuery& query, const SearchFieldSet& fields,
                       bool retain) {
    std::size_t selected = 0;
    for (ListRow& row : rows) {
        if (!retain) {
            row.SetSelected(false);
        }
        // Most rows hold the text nowhere: one look at all their columns at once tells. (A
        // textual test folds a row that is not ASCII column by column, as an invalid byte at a
        // column's end may fold otherwise when its neighbour follows.)
        const std::string_view whole = row.Text();
        bool found = false;
        const bool nowhere = (query.Binary() || IsAscii(whole)) && !query.Found(whole);
        for (std::size_t f = 0; f < kSelectFieldCount && !found && !nowhere; ++f) {
            found = fields.test(f) && query.Found(row.Get(SelectFields()[f].Pane));
        }
        if (found) {
            row.SetSelected(true);
        }
        if (row.Selected()) {
            ++selected;
        }
    }
    return selected;
}

SelectionCounts RunSelection(Settings& settings, RowList& files, RowList& playlist,
                             const SelectionChoice& choice) {
    PushFour(settings.Selects, choice.Text);
    const TextQuery query(choice.Text, choice.CaseSensitive);
    SelectionCounts counts;
    if (choice.Window == SelectWindow::Files || choice.Window == SelectWindow::Both) {
        counts.Files = SelectRows(files, query, choice.Fields, choice.Retain);
    }
    if (choice.Window == SelectWindow::Playlist || choice.Window == SelectWindow::Both) {
        counts.Playlist = SelectRows(playlist, query, choice.Fields, choice.Retain);
    }
    settings.SelectMode = static_cast<std::int16_t>(choice.Window);
    settings.SaveSelect = choice.Retain ? 1 : 0;
    settings.SelectCase = choice.CaseSensitive ? 1 : 0;
    settings.SelectOptions = FieldFlagsText(choice.Fields, kSelectFieldCount);
    return counts;
}

}  // namespace jk
