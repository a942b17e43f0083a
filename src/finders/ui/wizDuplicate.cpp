#include "finders/ui/wizDuplicate.h"

#include <algorithm>
#include <cstdint>
#include <memory>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QTabWidget>
#include <QTextEdit>
#include <QVBoxLayout>

#include "finders/DuplicateArray.h"
#include "finders/ResultRows.h"
#include "finders/SearchRequest.h"
#include "finders/ui/ResultsPane.h"
#include "ui/common/QtText.h"
#include "util/PathHelpers.h"

namespace jk {

namespace {

constexpr const char* kHelpText =
    "The duplicate finder can help you weed out redundant songs in your collection. Choose "
    "where the songs are compared from and what makes two songs the same, then press Start.\n\n"
    "Songs are compared by their tags or their file lists, ignoring case; the contents of the "
    "files are never read. A group is listed when one of its songs comes from the source chosen "
    "under \"Display duplicates pertaining to\".\n\n"
    "Right-click the results to play them, copy or move them, or let the finder propose the "
    "copies to keep: files go to the desktop's trash only after you confirm.";

}  // namespace

wizDuplicate::wizDuplicate(FinderHost& host, QWidget* parent) : QDialog(parent), m_host(host) {
    setWindowTitle("Duplicate Finder");
    setWindowIcon(QIcon::fromTheme("edit-copy"));
    setModal(false);
    setSizeGripEnabled(true);

    m_controls = new QWidget(this);
    auto* sources = new QGroupBox("Compare files from:", m_controls);
    m_chkFolder = new QCheckBox("Current folder", sources);
    m_chkFolder->setObjectName("chkFolder");
    m_chkPlaylist = new QCheckBox("Playlist", sources);
    m_chkPlaylist->setObjectName("chkPlaylist");
    m_chkVirtual = new QCheckBox("Virtual drives", sources);
    m_chkVirtual->setObjectName("chkVirtual");
    auto* sourceLayout = new QVBoxLayout(sources);
    sourceLayout->addWidget(m_chkFolder);
    sourceLayout->addWidget(m_chkPlaylist);
    sourceLayout->addWidget(m_chkVirtual);

    m_combo1 = new QComboBox(m_controls);
    m_combo1->setObjectName("Combo1");
    for (const DupeCriterion& criterion : kDupeCriteria) {
        m_combo1->addItem(ToQString(criterion.Row));
    }
    m_combo2 = new QComboBox(m_controls);
    m_combo2->setObjectName("Combo2");
    for (const std::string_view row : kDupeShowRows) {
        m_combo2->addItem(ToQString(row));
    }
    m_chkClear = new QCheckBox("Clear results before processing", m_controls);
    m_chkClear->setObjectName("chkClear");
    m_chkOnTop = new QCheckBox("Keep this window always on top", m_controls);
    m_chkOnTop->setObjectName("chkOnTop");
    connect(m_chkOnTop, &QCheckBox::toggled, this, [this](bool onTop) {
        const bool visible = isVisible();
        setWindowFlag(Qt::WindowStaysOnTopHint, onTop);
        if (visible) {
            show();
        }
    });
    m_text1 = new QTextEdit(m_controls);
    m_text1->setObjectName("Text1");
    m_text1->setReadOnly(true);
    m_text1->setPlainText(kHelpText);

    auto* criteria = new QGridLayout;
    criteria->addWidget(new QLabel("Determine duplicates based on", m_controls), 0, 0);
    criteria->addWidget(m_combo1, 0, 1);
    criteria->addWidget(new QLabel("Display duplicates pertaining to ", m_controls), 1, 0);
    criteria->addWidget(m_combo2, 1, 1);
    criteria->addWidget(m_chkClear, 2, 0, 1, 2);
    criteria->addWidget(m_chkOnTop, 3, 0, 1, 2);
    criteria->setRowStretch(4, 1);
    auto* controlsLayout = new QHBoxLayout(m_controls);
    auto* left = new QVBoxLayout;
    left->addWidget(sources);
    left->addLayout(criteria);
    controlsLayout->addLayout(left);
    controlsLayout->addWidget(m_text1, 1);

    m_results = new ResultsPane(m_host, this);
    connect(m_results, &ResultsPane::RowsRemoved, this, [this] {
        ForgetGroups();
        ShowStats();
    });
    connect(&m_results->Model(), &QAbstractItemModel::layoutChanged, this,
            &wizDuplicate::ForgetGroups);
    connect(m_results, &ResultsPane::RowsFilled, this, [this] {
        // A list ended short by a change of the catalogue.
        if (m_results->RowsMade() != m_rowsListed) {
            ForgetGroups();
            ShowStats();
        }
    });

    m_tabs = new QTabWidget(this);
    m_tabs->setObjectName("TabStrip1");
    m_tabs->addTab(m_controls, "Options");
    auto* resultsPage = new QWidget(this);
    resultsPage->setObjectName("frResults");
    auto* resultsLayout = new QVBoxLayout(resultsPage);
    resultsLayout->setContentsMargins(0, 0, 0, 0);
    resultsLayout->addWidget(m_results);
    m_tabs->addTab(resultsPage, "Results");

    auto* cover = new QLabel("Processing...", m_tabs);
    cover->setAlignment(Qt::AlignCenter);
    m_cover = cover;
    m_cover->setObjectName("Cover");
    m_cover->setAutoFillBackground(true);
    m_cover->hide();

    m_command1 = new QPushButton(QIcon::fromTheme("system-run"), "Start", this);
    m_command1->setObjectName("Command1");
    m_command1->setDefault(true);
    m_command2 = new QPushButton(QIcon::fromTheme("window-close"), "Close", this);
    m_command2->setObjectName("Command2");
    connect(m_command1, &QPushButton::clicked, this, &wizDuplicate::Command1_Click);
    connect(m_command2, &QPushButton::clicked, this, &wizDuplicate::Command2_Click);
    m_status = new QLabel(ToQString(kSearchReadyStatus), this);
    m_status->setObjectName("lblStatus");
    m_bar = new QProgressBar(this);
    m_bar->setObjectName("PBar");
    m_bar->setTextVisible(false);
    m_bar->setMaximumWidth(200);
    m_bar->setMaximum(kSearchBarSteps);
    m_bar->setValue(0);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(m_status, 1);
    bottom->addWidget(m_bar);
    bottom->addWidget(m_command1);
    bottom->addWidget(m_command2);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_tabs, 1);
    layout->addLayout(bottom);

    m_popup = new QMenu(this);
    m_popup->setObjectName("mPopup");
    const auto add = [this](const char* name, const char* caption, const char* icon,
                            const std::function<void()>& run) {
        QAction* action = m_popup->addAction(QIcon::fromTheme(icon), caption);
        action->setObjectName(name);
        connect(action, &QAction::triggered, this, run);
    };
    ResultsPane* r = m_results;
    add("PlaySelected", "Play &selected", "media-playback-start", [r] { r->PlaySelected(); });
    add("PlayAll", "Play &all results", "media-playback-start", [r] { r->PlayAll(); });
    m_popup->addSeparator();
    add("CopyTo", "&Copy to...", "edit-copy", [r] { r->CopyTo(); });
    add("MoveFilesTo", "&Move to...", "go-jump", [r] { r->MoveTo(); });
    add("DeleteFile", "&Delete", "user-trash", [this] { DeleteFile_Click(); });
    m_popup->addSeparator();
    add("ProposeBestCopies", "Propose &best copies", "edit-select-all",
        [this] { ProposeBestCopies_Click(); });
    connect(r, &QWidget::customContextMenuRequested, this, [this, r](const QPoint& at) {
        if (m_host.Options != nullptr) {
            findChild<QAction*>("DeleteFile")->setEnabled(m_host.Options->DelMode != 2);
        }
        findChild<QAction*>("ProposeBestCopies")->setEnabled(!m_groupOf.empty());
        m_popup->popup(r->viewport()->mapToGlobal(at));
    });

    // Form_Load
    if (m_host.Options != nullptr) {
        const Settings& s = *m_host.Options;
        m_combo1->setCurrentIndex(std::clamp<int>(s.DupeCriteria, 0, m_combo1->count() - 1));
        m_combo2->setCurrentIndex(std::clamp<int>(s.DupeShowCriteria, 0, m_combo2->count() - 1));
        m_chkFolder->setChecked(s.DupeFolder != 0);
        m_chkPlaylist->setChecked(s.DupePlaylist != 0);
        m_chkVirtual->setChecked(s.DupeVirtual != 0);
        m_chkClear->setChecked(s.DupeClear != 0);
        m_chkOnTop->setChecked(s.DupeOnTop != 0);
        m_results->ApplyColumnOrder(s.ColumnOrderDupe);
    }
    resize(900, 560);
}

QString wizDuplicate::Status() const {
    return m_status->text();
}

void wizDuplicate::Progress(std::size_t done, std::size_t total) {
    const int step = total == 0 ? 0
                                : static_cast<int>(static_cast<double>(done) /
                                                   static_cast<double>(total) * kSearchBarSteps);
    m_bar->setValue(std::min(step, kSearchBarSteps));
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void wizDuplicate::Command1_Click() {
    if (!m_chkFolder->isChecked() && !m_chkPlaylist->isChecked() && !m_chkVirtual->isChecked()) {
        return;
    }
    m_cover->setGeometry(m_tabs->rect());
    m_cover->raise();
    m_cover->show();
    m_command1->setEnabled(false);
    m_command2->setEnabled(false);
    if (m_chkClear->isChecked()) {
        m_results->Clear();
    }
    FindDuplicates();
    m_cover->hide();
    m_command1->setEnabled(true);
    m_command2->setEnabled(true);
    m_tabs->setCurrentIndex(1);
    CleanUp();
}

void wizDuplicate::FindDuplicates() {
    m_bar->setValue(0);
    DupeArray records;
    const DupeProgress progress = [this](std::size_t done, std::size_t total) {
        Progress(done, total);
    };
    if (m_chkPlaylist->isChecked() && m_host.Playlist != nullptr) {
        m_status->setText(ToQString(kScanningPlaylist));
        records.AddRows(*m_host.Playlist, kSourcePlaylist, progress);
        m_bar->setValue(0);
    }
    if (m_chkFolder->isChecked() && m_host.Files != nullptr) {
        m_status->setText(ToQString(kScanningFolder));
        records.AddRows(*m_host.Files, kSourceFolder, progress);
        m_bar->setValue(0);
    }
    if (m_chkVirtual->isChecked() && m_host.Catalogue != nullptr) {
        m_status->setText(ToQString(kScanningVirtualDrives));
        records.AddCatalogue(*m_host.Catalogue, progress);
        m_bar->setValue(0);
    }
    m_status->setText(ToQString(kProcessing));
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    const bool appended = !m_results->Rows().empty();
    const bool exact = m_host.Options != nullptr && m_host.Options->ExactTimes != 0;
    ResultsTally tally(exact);
    for (const ListRow& row : m_results->Rows()) {
        tally.Add(row);
    }
    auto members = std::make_shared<const std::vector<DupeMember>>(
        records.Group(m_combo1->currentIndex(), ShowBit(m_combo2->currentIndex()), m_groups));
    std::vector<std::size_t> groups;
    std::vector<std::int16_t> sources;
    groups.reserve(members->size());
    sources.reserve(members->size());
    std::vector<bool> listed(records.Size());
    for (const DupeMember& member : *members) {
        groups.push_back(member.Group);
        sources.push_back(records.Source(member.Record));
        listed[member.Record] = true;
        m_groups = std::max(m_groups, member.Group + 1);
    }
    // The statistics of the rows to come, read in the records' own order (where they lie
    // together): a listed row differs from its record in its Title alone, and the sum of whole
    // sizes does not depend on the order.
    records.VisitListed(
        listed, Column::Time, Column::Size,
        [&tally](std::string_view time, std::string_view size) { tally.Add(time, size); });
    if (appended) {
        // Rows of an earlier run stand above: their groups are no longer known.
        groups.clear();
        sources.clear();
    }
    m_groupOf = std::move(groups);
    m_sourceOf = std::move(sources);
    m_proposed = false;
    m_bar->setValue(0);
    m_status->setText(ToQString(tally.Text()));
    m_rowsListed = m_results->RowsMade() + members->size();
    ShowRows(std::make_shared<const DupeArray>(std::move(records)), std::move(members));
}

// Only the listed records become rows, straight from where the songs are held: a screenful at
// once, the rest between turns of the event loop, so that a million duplicates list without a
// freeze. A change of the catalogue they are read from ends the list where it stands (the main
// window has the rows finished before it changes the catalogue).
void wizDuplicate::ShowRows(std::shared_ptr<const DupeArray> records,
                            std::shared_ptr<const std::vector<DupeMember>> members) {
    const CatalogueView* catalogue = m_chkVirtual->isChecked() ? m_host.Catalogue : nullptr;
    const std::uint64_t generation = catalogue != nullptr ? catalogue->Generation() : 0;
    // The catalogue's generation takes a look at every volume: once a run of making is enough.
    const ResultsPane* pane = m_results;
    m_results->AppendRowsInSlices([records = std::move(records), members = std::move(members),
                                   catalogue, generation, pane, checked = pane->FillTurn() - 1,
                                   next = std::size_t{0}](RowList& rows, std::size_t most) mutable {
        if (catalogue != nullptr && checked != pane->FillTurn()) {
            if (catalogue->Generation() != generation) {
                return false;
            }
            checked = pane->FillTurn();
        }
        const std::size_t end = next + std::min(most, members->size() - next);
        if (next == 0) {
            rows.reserve(rows.size() + members->size());
        }
        for (; next < end; ++next) {
            rows.push_back(DupeRow(records->Row((*members)[next].Record)));
        }
        return next < members->size();
    });
}

void wizDuplicate::CatalogueChanging() {
    m_results->FinishRows();
}

void wizDuplicate::ShowStats() {
    const bool exact = m_host.Options != nullptr && m_host.Options->ExactTimes != 0;
    m_status->setText(ToQString(ResultsStats(m_results->Rows(), exact)));
}

void wizDuplicate::CleanUp() {
    if (m_host.Options == nullptr) {
        return;
    }
    Settings& s = *m_host.Options;
    s.DupeCriteria = static_cast<std::int16_t>(m_combo1->currentIndex());
    s.DupeShowCriteria = static_cast<std::int16_t>(m_combo2->currentIndex());
    s.DupeFolder = m_chkFolder->isChecked() ? 1 : 0;
    s.DupePlaylist = m_chkPlaylist->isChecked() ? 1 : 0;
    s.DupeVirtual = m_chkVirtual->isChecked() ? 1 : 0;
    s.DupeClear = m_chkClear->isChecked() ? 1 : 0;
    s.DupeOnTop = m_chkOnTop->isChecked() ? 1 : 0;
    m_results->StoreColumnOrder(s.ColumnOrderDupe);
}

void wizDuplicate::closeEvent(QCloseEvent* event) {
    // However the window goes, the columns stay as they were left.
    if (m_host.Options != nullptr) {
        m_results->StoreColumnOrder(m_host.Options->ColumnOrderDupe);
    }
    QDialog::closeEvent(event);
}

void wizDuplicate::Command2_Click() {
    CleanUp();
    close();
}

void wizDuplicate::ForgetGroups() {
    if (m_groupOf.size() != m_results->Rows().size()) {
        m_groupOf.clear();
        m_sourceOf.clear();
        m_proposed = false;
    }
}

void wizDuplicate::ProposeBestCopies_Click() {
    if (m_groupOf.empty() || m_groupOf.size() != m_results->Rows().size()) {
        return;
    }
    std::vector<DupeListed> listed;
    listed.reserve(m_groupOf.size());
    for (std::size_t i = 0; i < m_groupOf.size(); ++i) {
        listed.push_back(DupeListed{m_results->Rows()[i], m_groupOf[i], m_sourceOf[i]});
    }
    const CopyProposal proposal = ProposeBestCopies(listed, [](const DupeListed& row) {
        const std::string path(row.Row.Get(Column::Filename));
        return IsRealPath(path) && QFileInfo::exists(QString::fromStdString(path));
    });
    RowList& rows = m_results->Rows();
    for (std::size_t i = 0; i < rows.size(); ++i) {
        rows[i].SetSelected(proposal.Select[i]);
    }
    m_results->Model().SetKept(proposal.Keep);
    m_results->ShowSelection();
    m_proposed = true;
}

void wizDuplicate::DeleteFile_Click() {
    if (!m_proposed) {
        m_results->DeleteSelected();
        return;
    }
    const std::vector<std::string> paths = m_results->SelectedPaths();
    if (paths.empty()) {
        return;
    }
    const UserMessage question = BestCopiesDeleteQuestion(paths);
    m_results->DeleteSelected(&question);
}

}  // namespace jk
