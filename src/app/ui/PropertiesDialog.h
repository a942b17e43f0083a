#pragma once

// "Properties": a song's record, and its ID3v1 fields to edit. "OK" writes the changed fields
// through the tag writer and reads the song afresh into the cache, so that its rows can show
// the tag as it now stands.

#include <string>

#include <QDialog>

#include "app/SongProperties.h"
#include "metadata/SongInfo.h"

class QComboBox;
class QLineEdit;

namespace jk {

class ListRow;
struct Session;

class PropertiesDialog final : public QDialog {
    Q_OBJECT

public:
    PropertiesDialog(Session& session, std::string path, QWidget* parent = nullptr);

    // True once the tag was written.
    bool Written() const { return m_written; }
    // A row of the song, with the texts read after the write (the path stays).
    void UpdateRow(ListRow& row) const;
    TagFields Fields() const;
    void SetFields(const TagFields& fields);

protected:
    void accept() override;

private:
    Session& m_session;
    std::string m_path;
    SongInfo m_song;
    TagFields m_before;
    bool m_written = false;
    QLineEdit* m_title = nullptr;
    QLineEdit* m_artist = nullptr;
    QLineEdit* m_album = nullptr;
    QLineEdit* m_year = nullptr;
    QComboBox* m_genre = nullptr;
    QLineEdit* m_comment = nullptr;
    QLineEdit* m_track = nullptr;
};

}  // namespace jk
