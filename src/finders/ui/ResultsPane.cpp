#include "finders/ui/ResultsPane.h"

#include <limits>

#include <QElapsedTimer>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTimer>

#include "app/ColumnLayout.h"
#include "finders/ResultRows.h"
#include "finders/TrashRows.h"
#include "ui/common/MessageBoxes.h"

namespace jk {

namespace {

constexpr std::int16_t kDeleteWithoutWarning = 1;
constexpr int kColumns = static_cast<int>(kColumnCount);
// A slice of rows made or freed between turns of the event loop: short enough that the window
// keeps answering, the rows made a thousand at a time.
constexpr qint64 kSliceMs = 8;
constexpr std::size_t kRowsAtOnce = 1000;
constexpr std::size_t kRowsFreedAtOnce = 20000;
constexpr qint64 kTellEveryMs = 100;

}  // namespace

ResultsPane::ResultsPane(FinderHost& host, QWidget* parent)
    : QTableView(parent), m_host(host), m_model(m_rows, this) {
    setModel(&m_model);
    setObjectName("ResultsView");
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setSortingEnabled(true);
    horizontalHeader()->setSortIndicatorShown(false);
    horizontalHeader()->setSectionsMovable(true);
    horizontalHeader()->setHighlightSections(false);
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    setAlternatingRowColors(true);
    setWordWrap(false);
    setContextMenuPolicy(Qt::CustomContextMenu);
    // Wide columns for the texts, narrow ones for the numbers.
    for (const auto& [column, width] :
         {std::pair{Column::Title, 200}, std::pair{Column::Artist, 140},
          std::pair{Column::Album, 140}, std::pair{Column::Year, 50}, std::pair{Column::Genre, 80},
          std::pair{Column::Time, 55}, std::pair{Column::Bitrate, 55},
          std::pair{Column::Filename, 320}, std::pair{Column::Size, 80},
          std::pair{Column::Date, 130}}) {
        setColumnWidth(static_cast<int>(column), width);
    }
    connect(&m_model, &QAbstractItemModel::layoutChanged, this, [this] { ShowSelection(); });
    m_model.SetBeforeReadingAll([this] { FinishRows(); });
    m_fillTimer = new QTimer(this);
    m_fillTimer->setInterval(0);
    connect(m_fillTimer, &QTimer::timeout, this, &ResultsPane::FillSlice);
}

void ResultsPane::ShowRowsInSlices(RowMaker make) {
    if (!m_rows.empty()) {
        m_dropping.push_back(std::move(m_rows));
        m_rows = RowList();
    }
    // The first rows at once, so the list never shows the rows replaced.
    StartFilling(std::move(make), kFirstRows);
    m_model.RowsReplaced();
    if (!m_make) {
        Q_EMIT RowsFilled();
    }
}

void ResultsPane::AppendRowsInSlices(RowMaker make) {
    FinishRows();
    StartFilling(std::move(make), m_rows.size() + kFirstRows);
    m_model.RowsAppended();
    if (!m_make) {
        Q_EMIT RowsFilled();
    }
}

void ResultsPane::StartFilling(RowMaker make, std::size_t firstRows) {
    ++m_fillTurn;
    m_sinceTold.start();
    m_make = std::move(make);
    while (m_make && m_rows.size() < firstRows) {
        if (!m_make(m_rows, firstRows - m_rows.size())) {
            m_make = nullptr;
        }
    }
    if (m_make || !m_dropping.empty()) {
        m_fillTimer->start();
    }
}

void ResultsPane::FillSlice() {
    QElapsedTimer slice;
    slice.start();
    if (m_make) {
        ++m_fillTurn;
        while (m_make && slice.elapsed() < kSliceMs) {
            if (!m_make(m_rows, kRowsAtOnce)) {
                m_make = nullptr;
            }
        }
        // The view is told of new rows a few times a second, not at every slice: each time it
        // lays out and paints again, which would cost as much as making the rows.
        if (!m_make || m_sinceTold.elapsed() >= kTellEveryMs) {
            m_model.RowsAppended();
            m_sinceTold.restart();
        }
        if (!m_make) {
            Q_EMIT RowsFilled();
        }
        return;  // the freeing waits for the rows
    }
    while (!m_dropping.empty() && slice.elapsed() < kSliceMs) {
        RowList& rows = m_dropping.back();
        rows.resize(rows.size() - std::min(rows.size(), kRowsFreedAtOnce));
        if (rows.empty()) {
            m_dropping.pop_back();
        }
    }
    if (m_dropping.empty()) {
        m_fillTimer->stop();
    }
}

void ResultsPane::FinishRows() {
    if (!m_make) {
        return;
    }
    ++m_fillTurn;
    while (m_make) {
        if (!m_make(m_rows, std::numeric_limits<std::size_t>::max())) {
            m_make = nullptr;
        }
    }
    m_model.RowsAppended();
    Q_EMIT RowsFilled();
}

void ResultsPane::StopFilling() {
    m_make = nullptr;
}

void ResultsPane::TakeSelection() {
    FinishRows();
    m_model.ApplySelection(selectionModel()->selection());
}

void ResultsPane::ShowSelection() {
    selectionModel()->select(m_model.SelectionOfRows(), QItemSelectionModel::ClearAndSelect);
}

std::vector<std::string> ResultsPane::SelectedPaths() {
    TakeSelection();
    std::vector<std::string> paths;
    for (const ListRow& row : m_rows) {
        if (row.Selected()) {
            paths.emplace_back(row.Get(Column::Filename));
        }
    }
    return paths;
}

void ResultsPane::AddSelected() {
    TakeSelection();
    if (!m_host.AddToPlaylist) {
        return;
    }
    RowList added;
    for (const ListRow& row : m_rows) {
        if (row.Selected()) {
            added.push_back(PlaylistRowOfResult(row));
        }
    }
    m_host.AddToPlaylist(std::move(added));
}

void ResultsPane::AddAll() {
    if (!m_host.AddToPlaylist) {
        return;
    }
    FinishRows();
    RowList added;
    added.reserve(m_rows.size());
    for (const ListRow& row : m_rows) {
        added.push_back(PlaylistRowOfResult(row));
    }
    m_host.AddToPlaylist(std::move(added));
}

void ResultsPane::RemoveSelected() {
    TakeSelection();
    std::erase_if(m_rows, [](const ListRow& row) { return row.Selected(); });
    m_model.RowsReplaced();
    Q_EMIT RowsRemoved();
}

void ResultsPane::CropSelected() {
    TakeSelection();
    // From the first row up, not advancing after a removal: every unselected row goes.
    std::erase_if(m_rows, [](const ListRow& row) { return !row.Selected(); });
    m_model.RowsReplaced();
    ShowSelection();
    Q_EMIT RowsRemoved();
}

void ResultsPane::CopyTo() {
    const std::vector<std::string> paths = SelectedPaths();
    if (!paths.empty() && m_host.CopyOrMove) {
        m_host.CopyOrMove(paths, false);
    }
}

void ResultsPane::MoveTo() {
    const std::vector<std::string> paths = SelectedPaths();
    if (!paths.empty() && m_host.CopyOrMove) {
        m_host.CopyOrMove(paths, true);
    }
}

void ResultsPane::DeleteSelected(const UserMessage* question) {
    TakeSelection();
    std::vector<bool> selected;
    selected.reserve(m_rows.size());
    bool any = false;
    for (const ListRow& row : m_rows) {
        selected.push_back(row.Selected());
        any = any || row.Selected();
    }
    if (!any || !m_host.Trash) {
        return;
    }
    const bool warn = m_host.Options == nullptr || m_host.Options->DelMode != kDeleteWithoutWarning;
    if (question != nullptr ? !Ask(*question) : warn && !Ask(DeleteFilesQuestion())) {
        return;
    }
    const TrashOutcome outcome = TrashSelectedRows(m_rows, selected, m_host.Trash);
    m_model.RowsReplaced();
    ShowSelection();
    Q_EMIT RowsRemoved();
    if (!outcome.Failed.empty()) {
        Tell(TrashFailuresMessage(outcome.Failed));
    }
}

void ResultsPane::Clear() {
    StopFilling();
    // A million rows take a while to free: a slice at a time, as when a list is replaced.
    if (!m_rows.empty()) {
        m_dropping.push_back(std::move(m_rows));
        m_rows = RowList();
        m_fillTimer->start();
    }
    m_model.RowsReplaced();
    Q_EMIT RowsRemoved();
}

void ResultsPane::WipePlaylist() {
    if (m_host.WipePlaylist) {
        m_host.WipePlaylist();
    }
}

void ResultsPane::Hand(PlayRequest how) {
    TakeSelection();
    if (!m_rows.empty() && m_host.Play) {
        m_host.Play(m_rows, how);
    }
}

void ResultsPane::EnqueueAll() {
    Hand(PlayRequest::EnqueueAll);
}
void ResultsPane::EnqueueSelected() {
    Hand(PlayRequest::EnqueueSelected);
}
void ResultsPane::PlaySelected() {
    Hand(PlayRequest::PlaySelected);
}
void ResultsPane::PlayAll() {
    Hand(PlayRequest::PlayAll);
}
void ResultsPane::PlayShuffle() {
    Hand(PlayRequest::Shuffle);
}

bool ResultsPane::Ask(const UserMessage& question) {
    if (m_host.Ask) {
        return m_host.Ask(question);
    }
    return AskInBox(this, question, BoxIcon(question.icon), QMessageBox::Yes | QMessageBox::No,
                    QMessageBox::NoButton) == QMessageBox::Yes;
}

void ResultsPane::Tell(const UserMessage& message) {
    if (m_host.Tell) {
        m_host.Tell(message);
        return;
    }
    ShowMessageBox(this, message, BoxIcon(message.icon));
}

void ResultsPane::mousePressEvent(QMouseEvent* event) {
    m_lastButton = event->button();
    QTableView::mousePressEvent(event);
}

void ResultsPane::mouseDoubleClickEvent(QMouseEvent* event) {
    QTableView::mouseDoubleClickEvent(event);
    if (event->button() != Qt::MiddleButton && m_lastButton != Qt::MiddleButton &&
        selectionModel()->hasSelection()) {
        PlaySelected();
    }
}

void ResultsPane::keyPressEvent(QKeyEvent* event) {
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) &&
        selectionModel()->hasSelection()) {
        PlaySelected();
        return;
    }
    QTableView::keyPressEvent(event);
}

void ResultsPane::ApplyColumnOrder(std::string_view order) {
    QHeaderView* header = horizontalHeader();
    const std::vector<int> columns = ParseColumnOrder(order, kColumns);
    for (int visual = 0; visual < kColumns; ++visual) {
        header->moveSection(header->visualIndex(columns[static_cast<std::size_t>(visual)]), visual);
    }
}

void ResultsPane::StoreColumnOrder(std::string& order) const {
    const QHeaderView* header = horizontalHeader();
    std::vector<int> columns;
    columns.reserve(kColumns);
    for (int visual = 0; visual < kColumns; ++visual) {
        columns.push_back(header->logicalIndex(visual));
    }
    order = FormatColumnOrder(columns, order, kColumns);
}

}  // namespace jk
