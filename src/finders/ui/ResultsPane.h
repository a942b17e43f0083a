#pragma once

// A finder's result list (ResultsView) with the commands of its pop-up menu: the rows go to the
// playlist, the player, a copy or move, or the trash. The Search wizard and the Duplicate
// Finder each hold one. A double click (not with the middle button) and Enter play the
// selection.

#include <string>
#include <string_view>
#include <vector>

#include <QTableView>

#include "finders/ui/FinderHost.h"
#include "finders/ui/ResultsModel.h"
#include "listing/ListRow.h"

namespace jk {

class ResultsPane final : public QTableView {
    Q_OBJECT

public:
    ResultsPane(FinderHost& host, QWidget* parent = nullptr);

    RowList& Rows() { return m_rows; }
    ResultsModel& Model() { return m_model; }
    // The view's selection into the rows' flags, and back.
    void TakeSelection();
    void ShowSelection();

    // The commands of menuResults and mPopup.
    void AddSelected();
    void AddAll();
    void RemoveSelected();
    void CropSelected();
    void CopyTo();
    void MoveTo();
    // "&Delete": asks unless DelMode says without warning, or always with `question` when given
    // (the keep-best proposal). A row goes only when its file reached the trash; the files that
    // stayed are named in one message.
    void DeleteSelected(const UserMessage* question = nullptr);
    void Clear();
    void WipePlaylist();
    void EnqueueAll();
    void EnqueueSelected();
    void PlaySelected();
    void PlayAll();
    void PlayShuffle();

    std::vector<std::string> SelectedPaths();

    // The columns' order as the settings keep it (a ColumnOrder text), put on the header and
    // read back from it.
    void ApplyColumnOrder(std::string_view order);
    void StoreColumnOrder(std::string& order) const;

Q_SIGNALS:
    // The rows were removed or cleared: the window shows ResultsStats again.
    void RowsRemoved();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void Hand(PlayRequest how);
    bool Ask(const UserMessage& question);
    void Tell(const UserMessage& message);

    FinderHost& m_host;
    RowList m_rows;
    ResultsModel m_model;
    Qt::MouseButton m_lastButton = Qt::NoButton;
};

}  // namespace jk
