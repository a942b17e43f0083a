#pragma once

// The bookmark windows: wizBookmark ("New Bookmark"), and the editor Bookmarks, whose changes
// are handed back when it closes (there is no Cancel).

#include <functional>
#include <string>

#include <QDialog>

#include "catalogue/Bookmarks.h"

class QLineEdit;
class QMenu;
class QTableView;

namespace jk {

class BookmarkModel;

// Friendly name and location, both starting with the current folder; the accept button hands
// the pair over.
class wizBookmark final : public QDialog {
    Q_OBJECT

public:
    using AddFn = std::function<void(const Bookmark& bookmark)>;
    wizBookmark(const std::string& currentFolder, AddFn add, QWidget* parent = nullptr);

private:
    AddFn m_add;
    QLineEdit* m_name = nullptr;
    QLineEdit* m_location = nullptr;
};

class Bookmarks final : public QDialog {
    Q_OBJECT

public:
    using ApplyFn = std::function<void(const BookmarkList& bookmarks)>;
    using JumpFn = std::function<void(const std::string& location)>;
    Bookmarks(const BookmarkList& bookmarks, ApplyFn apply, JumpFn jump, QWidget* parent = nullptr);

    BookmarkModel& Model() { return *m_model; }
    QTableView& View() { return *m_view; }
    // The toolbar's buttons and the menu's items by key.
    void Slide(jk::Slide slide);
    void RemoveSelected();

    // Form_Unload: the rows go back in their order, however the window closes.
    void done(int result) override;

private:
    std::vector<bool> SelectedRows() const;
    void Select(const std::vector<bool>& rows);

    ApplyFn m_apply;
    JumpFn m_jump;
    BookmarkModel* m_model = nullptr;
    QTableView* m_view = nullptr;
    QMenu* m_menu = nullptr;
};

}  // namespace jk
