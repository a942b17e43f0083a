#include "app/ui/PropertiesDialog.h"

#include <vector>

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/Session.h"
#include "app/SongLookup.h"
#include "browse/ScanAddSong.h"
#include "metadata/Genres.h"
#include "metadata/TagWriter.h"
#include "ui/common/QtText.h"
#include "util/PathHelpers.h"

namespace jk {

namespace {

QLineEdit* Field(const std::string& text, int width, QWidget* parent) {
    auto* edit = new QLineEdit(ToQString(text), parent);
    edit->setMaxLength(width);
    return edit;
}

SongInfo ReadSong(Session& session, const std::string& path) {
    SongLookup lookup = MakeSongLookup(session);
    return GetSongInfo(path, lookup);
}

}  // namespace

PropertiesDialog::PropertiesDialog(Session& session, std::string path, QWidget* parent)
    : QDialog(parent), m_session(session), m_path(std::move(path)) {
    setObjectName(QStringLiteral("Properties"));
    setWindowTitle(ToQString(BareName(m_path)) + QStringLiteral(" - Properties"));
    m_song = ReadSong(m_session, m_path);
    const bool readable = !IsNonExistant(m_song);

    auto* record = new QGroupBox(QStringLiteral("File"), this);
    auto* recordForm = new QFormLayout(record);
    recordForm->setLabelAlignment(Qt::AlignRight);
    for (const PropertyLine& line :
         SongPropertyLines(m_song, m_path, m_session.Settings.FilenameMode)) {
        const std::string_view label = line.label;
        // The editable fields stand below; the record shows what the file is.
        if (label == "Title" || label == "Artist" || label == "Album" || label == "Year" ||
            label == "Genre" || label == "Track" || label == "Comment") {
            continue;
        }
        auto* value = new QLabel(ToQString(line.text), record);
        value->setTextInteractionFlags(Qt::TextSelectableByMouse);
        value->setWordWrap(true);
        recordForm->addRow(ToQString(label) + QStringLiteral(":"), value);
    }

    m_before = EditableFields(m_song);
    auto* tag = new QGroupBox(QStringLiteral("Tag"), this);
    auto* tagForm = new QFormLayout(tag);
    tagForm->setLabelAlignment(Qt::AlignRight);
    m_title = Field(m_before.Title, kTagTextChars, tag);
    m_artist = Field(m_before.Artist, kTagTextChars, tag);
    m_album = Field(m_before.Album, kTagTextChars, tag);
    m_year = Field(m_before.Year, kTagYearChars, tag);
    m_comment = Field(m_before.Comment, kTagCommentChars, tag);
    m_track = Field(m_before.Track, 3, tag);
    m_genre = new QComboBox(tag);
    m_genre->setEditable(true);
    std::vector<std::string> genres;
    FillGenreList(genres);
    for (const std::string& genre : genres) {
        m_genre->addItem(QString::fromStdString(genre));
    }
    m_genre->setCurrentText(ToQString(m_before.Genre));
    tagForm->addRow(QStringLiteral("&Title:"), m_title);
    tagForm->addRow(QStringLiteral("A&rtist:"), m_artist);
    tagForm->addRow(QStringLiteral("Al&bum:"), m_album);
    tagForm->addRow(QStringLiteral("&Year:"), m_year);
    tagForm->addRow(QStringLiteral("&Genre:"), m_genre);
    tagForm->addRow(QStringLiteral("Trac&k:"), m_track);
    tagForm->addRow(QStringLiteral("&Comment:"), m_comment);
    tag->setEnabled(readable);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 16, 16, 12);
    layout->setSpacing(12);
    layout->addWidget(record);
    layout->addWidget(tag);
    layout->addWidget(buttons);
    setMinimumWidth(460);
}

TagFields PropertiesDialog::Fields() const {
    TagFields fields;
    fields.Title = m_title->text().toStdString();
    fields.Artist = m_artist->text().toStdString();
    fields.Album = m_album->text().toStdString();
    fields.Year = m_year->text().toStdString();
    fields.Genre = m_genre->currentText().toStdString();
    fields.Comment = m_comment->text().toStdString();
    fields.Track = m_track->text().toStdString();
    return fields;
}

void PropertiesDialog::SetFields(const TagFields& fields) {
    m_title->setText(ToQString(fields.Title));
    m_artist->setText(ToQString(fields.Artist));
    m_album->setText(ToQString(fields.Album));
    m_year->setText(ToQString(fields.Year));
    m_genre->setCurrentText(ToQString(fields.Genre));
    m_comment->setText(ToQString(fields.Comment));
    m_track->setText(ToQString(fields.Track));
}

void PropertiesDialog::accept() {
    std::string error;
    const TagChanges changes = ChangesBetween(m_before, Fields(), error);
    if (!error.empty()) {
        QMessageBox::warning(this, QStringLiteral("Sorry..."), ToQString(error));
        return;
    }
    if (changes.Any()) {
        const SongReadOptions options = SongReadOptionsOf(m_session);
        if (!WriteSongTag(m_path, EditedSong(m_song, changes), options.codepage.get())) {
            QMessageBox::warning(this, QStringLiteral("Drats!"),
                                 ToQString(TagWriteFailedText(BareName(m_path))));
            return;
        }
        m_written = true;
        // The file's new date makes the cache read it again.
        m_song = ReadSong(m_session, m_path);
    }
    QDialog::accept();
}

void PropertiesDialog::UpdateRow(ListRow& row) const {
    const ListRow fresh = FilesPaneRow(m_song);
    const bool selected = row.Selected();
    row = fresh;
    row.SetSelected(selected);
}

}  // namespace jk
