#pragma once

// A finder's result list (ResultsView) with the commands of its pop-up menu: the rows go to the
// playlist, the player, a copy or move, or the trash. The Search wizard and the Duplicate
// Finder each hold one. A double click (not with the middle button) and Enter play the
// selection.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <QElapsedTimer>
#include <QTableView>

#include "finders/ui/FinderHost.h"
#include "finders/ui/ResultsModel.h"
#include "listing/ListRow.h"

class QTimer;

namespace jk {

class ResultsPane final : public QTableView {
    Q_OBJECT

public:
    ResultsPane(FinderHost& host, QWidget* parent = nullptr);

    // Every row: those still to come in slices are made first.
    RowList& Rows() {
        FinishRows();
        return m_rows;
    }
    ResultsModel& Model() { return m_model; }

    // The rows made at once when a list is replaced: more than a window shows.
    static constexpr std::size_t kFirstRows = 200;
    // Appends the next rows of a list, at most `most` (perhaps none yet, while what they come
    // from is still searched), in a short time; false once no more will come: all are made, or
    // what they were made from changed, which ends the list where it stands.
    using RowMaker = std::function<bool(RowList& rows, std::size_t most)>;
    // Shows the rows `make` gives in place of those shown: the first screenful at once, the rest
    // a slice at a time between turns of the event loop, so that a list of a million rows comes
    // without a freeze. The rows replaced are freed the same way. RowsFilled follows the last
    // slice.
    void ShowRowsInSlices(RowMaker make);
    // The same below the rows shown, which stay: the rows of an earlier fill are made first.
    void AppendRowsInSlices(RowMaker make);
    // The rows made so far, without making those still to come.
    std::size_t RowsMade() const { return m_rows.size(); }
    // Counts the runs of making (a slice, the first rows, the rest at once): within one the
    // event loop does not turn, so what the rows are made from cannot change.
    std::uint64_t FillTurn() const { return m_fillTurn; }
    // Makes the rows still to come at once (before anything reads every row).
    void FinishRows();
    bool Filling() const { return m_make != nullptr; }
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
    // The last slice of ShowRowsInSlices is in.
    void RowsFilled();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void Hand(PlayRequest how);
    // Makes the rows of `make` up to `firstRows` at once and leaves the rest to the slices.
    void StartFilling(RowMaker make, std::size_t firstRows);
    // One turn's worth of the rows to come and of the rows to free.
    void FillSlice();
    void StopFilling();
    bool Ask(const UserMessage& question);
    void Tell(const UserMessage& message);

    FinderHost& m_host;
    RowList m_rows;
    ResultsModel m_model;
    Qt::MouseButton m_lastButton = Qt::NoButton;
    RowMaker m_make;
    std::vector<RowList> m_dropping;  // replaced rows, freed a slice at a time
    QTimer* m_fillTimer = nullptr;
    std::uint64_t m_fillTurn = 0;
    QElapsedTimer m_sinceTold;  // since the model was last told of new rows
};

}  // namespace jk
