#pragma once

// The clipboard viewer (ClipboardViewer): the rows cut or copied, in a list of the twelve
// columns, and whether a paste of files will move or copy them.

#include <QDialog>

class QLabel;

namespace jk {

class ListPane;
class PlaylistModel;
struct RowClipboard;

class ClipboardViewer final : public QDialog {
    Q_OBJECT

public:
    ClipboardViewer(RowClipboard& clipboard, QWidget* parent = nullptr);
    ~ClipboardViewer() override;

    // After the clipboard changed.
    void Refresh();

private:
    RowClipboard& m_clipboard;
    PlaylistModel* m_model = nullptr;
    ListPane* m_list = nullptr;
    QLabel* m_summary = nullptr;
};

}  // namespace jk
