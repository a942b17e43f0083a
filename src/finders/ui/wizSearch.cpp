#include "finders/ui/wizSearch.h"

#include <algorithm>
#include <iterator>
#include <memory>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTimer>
#include <QVBoxLayout>

#include "app/Messages.h"
#include "finders/CatalogueSearch.h"
#include "finders/IndexedRows.h"
#include "finders/ResultRows.h"
#include "finders/SearchIndexKeeper.h"
#include "finders/ui/ResultsPane.h"
#include "ui/common/QtText.h"
#include "util/Utf8.h"

namespace jk {

namespace {

// Typing must pause this long before the catalogue is searched again.
constexpr int kLivePauseMs = 30;
// A catalogue this large is searched as the text is typed through the index only: a plain pass
// over it would hold the window for longer than a key's worth of time.
constexpr std::size_t kScanWhileTypingSongs = 50000;

std::string S(const QString& text) {
    return text.toStdString();
}

}  // namespace

// What a search tells the window; the window's event loop runs at each step of the bar.
class wizSearch::Front final : public SearchFront {
public:
    explicit Front(wizSearch& window) : m_window(window) {}
    void SetPanelStatus(std::string_view text) override {
        if (m_window.m_host.PanelStatus) {
            m_window.m_host.PanelStatus(std::string(text));
        }
    }
    void SetStatus(std::string_view text) override { m_window.m_status->setText(ToQString(text)); }
    void SetProgress(int value, int maximum) override {
        m_window.m_bar->setMaximum(maximum);
        m_window.m_bar->setValue(value);
        m_window.m_results->Model().RowsAppended();
        QCoreApplication::processEvents();
    }
    bool AbortRequested() override { return m_window.m_abort; }

private:
    wizSearch& m_window;
};

wizSearch::wizSearch(FinderHost& host, QWidget* parent) : QDialog(parent), m_host(host) {
    setWindowTitle("Search Wizard");
    setWindowIcon(QIcon::fromTheme("system-search"));
    setModal(false);
    setSizeGripEnabled(true);
    BuildControls();
    BuildMenus();
    m_liveTimer = new QTimer(this);
    m_liveTimer->setSingleShot(true);
    m_liveTimer->setInterval(kLivePauseMs);
    connect(m_liveTimer, &QTimer::timeout, this, &wizSearch::LiveSearch);
    // Form_Load
    UpdateCombos();
    if (m_host.Options != nullptr) {
        SetForm(LoadSearchForm(*m_host.Options, m_host.CurrentFolder));
        m_results->ApplyColumnOrder(m_host.Options->ColumnOrderSearch);
    }
    m_status->setText(ToQString(kSearchReadyStatus));
    resize(900, 600);
}

wizSearch::~wizSearch() {
    m_abort = true;
}

void wizSearch::BuildControls() {
    m_tabs = new QTabWidget(this);
    m_tabs->setObjectName("TabStrip1");
    m_tabs->addTab(BuildSearchPage(), "Search");
    m_tabs->addTab(BuildSizeDatePage(), "Size and date");
    m_tabs->addTab(BuildAdvancedPage(), "Advanced");

    m_command1 = new QPushButton(QIcon::fromTheme("edit-find"), "Search", this);
    m_command1->setObjectName("Command1");
    m_command1->setDefault(true);
    m_command5 = new QPushButton(QIcon::fromTheme("process-stop"), "Abort", this);
    m_command5->setObjectName("Command5");
    m_command2 = new QPushButton(QIcon::fromTheme("window-close"), "Close", this);
    m_command2->setObjectName("Command2");
    connect(m_command1, &QPushButton::clicked, this, &wizSearch::Command1_Click);
    connect(m_command5, &QPushButton::clicked, this, &wizSearch::Command5_Click);
    connect(m_command2, &QPushButton::clicked, this, &wizSearch::Command2_Click);
    auto* buttons = new QVBoxLayout;
    buttons->addWidget(m_command1);
    buttons->addWidget(m_command5);
    buttons->addStretch();
    buttons->addWidget(m_command2);

    auto* top = new QHBoxLayout;
    top->addWidget(m_tabs, 1);
    top->addLayout(buttons);

    m_results = new ResultsPane(m_host, this);
    connect(m_results, &ResultsPane::RowsRemoved, this, [this] {
        m_liveTally.reset();
        ShowStats();
    });
    connect(m_results, &ResultsPane::RowsFilled, this, &wizSearch::ShowStats);
    m_status = new QLabel(this);
    m_status->setObjectName("lblStatus");
    m_bar = new QProgressBar(this);
    m_bar->setObjectName("PBar");
    m_bar->setTextVisible(false);
    m_bar->setMaximumWidth(200);
    m_bar->setMaximum(kSearchBarSteps);
    m_bar->setValue(0);
    auto* statusLine = new QHBoxLayout;
    statusLine->addWidget(m_status, 1);
    statusLine->addWidget(m_bar);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(m_results, 1);
    layout->addLayout(statusLine);
}

QWidget* wizSearch::BuildSearchPage() {
    auto* page = new QWidget;
    page->setObjectName("frSearch");
    m_combo1 = new QComboBox(page);
    m_combo1->setObjectName("Combo1");
    m_combo1->setEditable(true);
    m_combo1->setInsertPolicy(QComboBox::NoInsert);
    m_combo1->setCompleter(nullptr);
    m_combo2 = new QComboBox(page);
    m_combo2->setObjectName("Combo2");
    m_combo2->setEditable(true);
    m_combo2->setInsertPolicy(QComboBox::NoInsert);
    m_combo2->setCompleter(nullptr);
    for (QComboBox* combo : {m_combo1, m_combo2}) {
        combo->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        combo->lineEdit()->installEventFilter(this);
    }
    connect(m_combo1->lineEdit(), &QLineEdit::textEdited, this, &wizSearch::Combo1_Edited);
    connect(m_combo2->lineEdit(), &QLineEdit::textEdited, this,
            [this](const QString& text) { Complete(m_combo2, text); });
    connect(m_combo2, &QComboBox::editTextChanged, this, [this] {
        if (isVisible()) {
            PrepareIndex();
        }
    });
    m_browse = new QPushButton(QIcon::fromTheme("folder-open"), "Browse...", page);
    m_browse->setObjectName("Command3");
    connect(m_browse, &QPushButton::clicked, this, &wizSearch::Browse);
    m_searchIn = new QPushButton("Search in...", page);
    m_searchIn->setObjectName("Command4");
    m_check1 = new QCheckBox("Clear results first", page);
    m_check1->setObjectName("Check1");
    m_check3 = new QCheckBox("Include subfolders", page);
    m_check3->setObjectName("Check3");

    auto* grid = new QGridLayout(page);
    grid->addWidget(new QLabel("Containing text:", page), 0, 0);
    grid->addWidget(m_combo1, 0, 1);
    grid->addWidget(m_searchIn, 0, 2);
    grid->addWidget(new QLabel("Look in:", page), 1, 0);
    grid->addWidget(m_combo2, 1, 1);
    grid->addWidget(m_browse, 1, 2);
    auto* checks = new QHBoxLayout;
    checks->addWidget(m_check1);
    checks->addWidget(m_check3);
    checks->addStretch();
    grid->addLayout(checks, 2, 1, 1, 2);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(3, 1);
    return page;
}

QWidget* wizSearch::BuildSizeDatePage() {
    auto* page = new QWidget;
    page->setObjectName("frSizeDate");
    m_combo3 = new QComboBox(page);
    m_combo3->setObjectName("Combo3");
    m_combo3->addItems({"irrelevant", "less than", "greater than"});
    m_text1 = new QLineEdit(page);
    m_text1->setObjectName("Text1");
    m_text1->setMaximumWidth(90);
    m_option1 = new QRadioButton("Last written", page);
    m_option1->setObjectName("Option1");
    m_option2 = new QRadioButton("Last written during the last", page);
    m_option2->setObjectName("Option2");
    m_combo4 = new QComboBox(page);
    m_combo4->setObjectName("Combo4");
    m_combo4->addItems({"any time", "before", "after", "between"});
    m_combo5 = new QComboBox(page);
    m_combo5->setObjectName("Combo5");
    m_combo5->setEditable(true);
    m_combo5->setInsertPolicy(QComboBox::NoInsert);
    m_combo5->setMinimumWidth(200);
    m_text2 = new QLineEdit(page);
    m_text2->setObjectName("Text2");
    m_text2->setMaximumWidth(60);
    m_combo6 = new QComboBox(page);
    m_combo6->setObjectName("Combo6");
    m_combo6->addItems({"hours", "days", "weeks", "months"});

    auto* grid = new QGridLayout(page);
    grid->addWidget(new QLabel("Size is ", page), 0, 0);
    auto* size = new QHBoxLayout;
    size->addWidget(m_combo3);
    size->addWidget(m_text1);
    size->addWidget(new QLabel("KB.", page));
    size->addStretch();
    grid->addLayout(size, 0, 1);
    grid->addWidget(m_option1, 1, 0);
    auto* written = new QHBoxLayout;
    written->addWidget(m_combo4);
    written->addWidget(m_combo5, 1);
    grid->addLayout(written, 1, 1);
    grid->addWidget(m_option2, 2, 0);
    auto* during = new QHBoxLayout;
    during->addWidget(m_text2);
    during->addWidget(m_combo6);
    during->addStretch();
    grid->addLayout(during, 2, 1);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(3, 1);
    return page;
}

QWidget* wizSearch::BuildAdvancedPage() {
    auto* page = new QWidget;
    page->setObjectName("frAdvanced");
    m_check2 = new QCheckBox("Case-sensitive matches only", page);
    m_check2->setObjectName("Check2");
    m_check4 = new QCheckBox("'Look in' folder defaults to current path", page);
    m_check4->setObjectName("Check4");
    m_check5 = new QCheckBox("Keep this window always on top", page);
    m_check5->setObjectName("Check5");
    connect(m_check5, &QCheckBox::toggled, this, &wizSearch::SetOnTop);
    auto* layout = new QVBoxLayout(page);
    layout->addWidget(m_check2);
    layout->addWidget(m_check4);
    layout->addWidget(m_check5);
    layout->addStretch();
    return page;
}

void wizSearch::BuildMenus() {
    m_searchInMenu = new QMenu("&Search in", this);
    m_searchInMenu->setObjectName("SearchIn");
    for (const SearchFieldEntry& entry : SearchFieldEntries()) {
        QAction* action = m_searchInMenu->addAction(ToQString(entry.Caption));
        action->setObjectName(ToQString(entry.Name));
        action->setCheckable(true);
        m_fieldActions.push_back(action);
    }
    m_searchInMenu->addSeparator();
    QAction* all = m_searchInMenu->addAction("Search all");
    all->setObjectName("SearchAll");
    QAction* none = m_searchInMenu->addAction("Search none");
    none->setObjectName("SearchNone");
    connect(all, &QAction::triggered, this, [this] {
        for (QAction* a : m_fieldActions) {
            a->setChecked(true);
        }
    });
    connect(none, &QAction::triggered, this, [this] {
        for (QAction* a : m_fieldActions) {
            a->setChecked(false);
        }
    });
    connect(m_searchIn, &QPushButton::clicked, this, [this] {
        m_searchInMenu->popup(m_searchIn->mapToGlobal(QPoint(0, m_searchIn->height())));
    });

    m_menuResults = new QMenu("&Results", this);
    m_menuResults->setObjectName("menuResults");
    ResultsPane* r = m_results;
    const auto add = [this, r](const char* name, const char* caption, const char* icon,
                               void (ResultsPane::*command)()) {
        QAction* action = m_menuResults->addAction(QIcon::fromTheme(icon), caption);
        action->setObjectName(name);
        connect(action, &QAction::triggered, r, command);
    };
    add("resultsAddSelected", "A&dd selected", "list-add", &ResultsPane::AddSelected);
    add("resultsAddAll", "Add &all results", "list-add", &ResultsPane::AddAll);
    add("resultsRemove", "&Remove selected", "list-remove", &ResultsPane::RemoveSelected);
    add("resultsCrop", "Cro&p selected", "transform-crop", &ResultsPane::CropSelected);
    m_menuResults->addSeparator();
    add("CopyTo", "&Copy to...", "edit-copy", &ResultsPane::CopyTo);
    add("MoveTo", "&Move to...", "go-jump", &ResultsPane::MoveTo);
    QAction* del = m_menuResults->addAction(QIcon::fromTheme("user-trash"), "&Delete");
    del->setObjectName("DeleteFile");
    connect(del, &QAction::triggered, r, [r] { r->DeleteSelected(); });
    m_menuResults->addSeparator();
    add("resultsClear", "&Clear results", "edit-clear", &ResultsPane::Clear);
    add("playlistWipe", "&Wipe playlist", "edit-delete", &ResultsPane::WipePlaylist);
    m_menuResults->addSeparator();
    add("enqueueAll", "En&queue all results", "media-playlist-append", &ResultsPane::EnqueueAll);
    add("enqueueSelected", "Enqueue selecte&d", "media-playlist-append",
        &ResultsPane::EnqueueSelected);
    add("playSelected", "&Play selected", "media-playback-start", &ResultsPane::PlaySelected);
    add("playAll", "P&lay all results", "media-playback-start", &ResultsPane::PlayAll);
    add("playShuffle", "&Jukarra results", "media-playlist-shuffle", &ResultsPane::PlayShuffle);
    connect(r, &QWidget::customContextMenuRequested, this, [this, r](const QPoint& at) {
        if (m_host.Options != nullptr) {
            findChild<QAction*>("DeleteFile")->setEnabled(m_host.Options->DelMode != 2);
        }
        m_menuResults->popup(r->viewport()->mapToGlobal(at));
    });
}

SearchForm wizSearch::Form() const {
    SearchForm form;
    form.Text = S(m_combo1->currentText());
    form.LookIn = S(m_combo2->currentText());
    for (std::size_t i = 0; i < m_fieldActions.size(); ++i) {
        form.Fields.set(i, m_fieldActions[i]->isChecked());
    }
    form.ClearFirst = m_check1->isChecked();
    form.CaseSensitive = m_check2->isChecked();
    form.Subfolders = m_check3->isChecked();
    form.DefaultToCurrent = m_check4->isChecked();
    form.OnTop = m_check5->isChecked();
    SizeDateCriteria& c = form.SizeDate;
    c.SizeMode = m_combo3->currentIndex();
    c.SizeText = S(m_text1->text());
    c.LastWritten = !m_option2->isChecked();
    c.TimeMode = m_combo4->currentIndex();
    c.DateText = S(m_combo5->currentText());
    c.LastUnit = m_combo6->currentIndex();
    c.LastCount = S(m_text2->text());
    return form;
}

void wizSearch::SetForm(const SearchForm& form) {
    m_combo1->setEditText(ToQString(form.Text));
    m_combo2->setEditText(ToQString(form.LookIn));
    for (std::size_t i = 0; i < m_fieldActions.size(); ++i) {
        m_fieldActions[i]->setChecked(form.Fields.test(i));
    }
    m_check1->setChecked(form.ClearFirst);
    m_check2->setChecked(form.CaseSensitive);
    m_check3->setChecked(form.Subfolders);
    m_check4->setChecked(form.DefaultToCurrent);
    m_check5->setChecked(form.OnTop);
    const SizeDateCriteria& c = form.SizeDate;
    m_combo3->setCurrentIndex(std::clamp(c.SizeMode, 0, 2));
    m_text1->setText(ToQString(c.SizeText));
    (c.LastWritten ? m_option1 : m_option2)->setChecked(true);
    m_combo4->setCurrentIndex(std::clamp(c.TimeMode, 0, 3));
    m_combo5->setEditText(ToQString(c.DateText));
    m_combo6->setCurrentIndex(std::clamp(c.LastUnit, 0, 3));
    m_text2->setText(ToQString(c.LastCount));
}

QString wizSearch::Status() const {
    return m_status->text();
}

// UpdateCombo1, UpdateCombo2 and Combo5's rows; the texts typed stay.
void wizSearch::UpdateCombos() {
    if (m_host.Options == nullptr) {
        return;
    }
    const Settings& settings = *m_host.Options;
    const auto refill = [](QComboBox* combo, const std::vector<std::string>& rows) {
        const QString text = combo->currentText();
        combo->clear();
        for (const std::string& row : rows) {
            combo->addItem(ToQString(row));
        }
        combo->setEditText(text);
    };
    refill(m_combo1, QueryList(settings));
    refill(m_combo2, LookInList(settings));
    refill(m_combo5,
           std::vector<std::string>(settings.SearchLasts.begin() + 1, settings.SearchLasts.end()));
}

void wizSearch::ShowStats() {
    const bool exact = m_host.Options != nullptr && m_host.Options->ExactTimes != 0;
    // The rows of a live search were summed as they were made: a million rows are not read
    // again in one go.
    if (m_liveTally && !m_results->Filling() && m_liveTally->ExactTimes() == exact &&
        m_liveTally->Rows() == static_cast<std::size_t>(m_results->Model().rowCount())) {
        m_status->setText(ToQString(m_liveTally->Text()));
        return;
    }
    m_status->setText(ToQString(ResultsStats(m_results->Rows(), exact)));
}

void wizSearch::CleanUp() {
    const SearchForm form = Form();
    if (m_host.Options != nullptr) {
        UpdateQueues(*m_host.Options, form);
        UpdateCombos();
        // The histories keep the texts trimmed; the boxes go on showing them as typed.
        m_combo1->setEditText(ToQString(form.Text));
        m_combo2->setEditText(ToQString(form.LookIn));
        m_combo5->setEditText(ToQString(form.SizeDate.DateText));
        StoreSearchForm(*m_host.Options, form);
        m_results->StoreColumnOrder(m_host.Options->ColumnOrderSearch);
    }
    m_bar->setValue(0);
    m_results->Model().RowsAppended();
    ShowStats();
}

void wizSearch::Command1_Click() {
    if (m_searching) {
        return;
    }
    m_liveTimer->stop();
    m_awaitingIndex = false;
    m_liveTally.reset();
    m_abort = false;
    SearchForm form = Form();
    if (form.ClearFirst) {
        m_results->Clear();
        form.ClearFirst = false;
    }
    SearchSources sources;
    sources.Drives = m_host.Drives;
    sources.Real = m_host.RealFiles;
    sources.Catalogue = m_host.Catalogue;
    const SearchScope scope = ScopeOf(form.LookIn);
    if (sources.Real == nullptr && !IsCatalogueScope(scope)) {
        return;
    }
    m_searching = true;
    Front front(*this);
    const SearchOutcome outcome =
        RunSearch(form, sources, m_results->Rows(), front, NowCivil(), [this] { CleanUp(); });
    m_searching = false;
    m_results->Model().RowsAppended();
    if (outcome.End == SearchEnd::Failed) {
        m_bar->setValue(0);
        const UserMessage box = ErrorBox();
        if (m_host.Tell) {
            m_host.Tell(box);
        } else {
            QMessageBox::warning(this, ToQString(box.title), ToQString(box.text));
        }
    }
    if (m_closing) {
        close();
    }
}

void wizSearch::Command5_Click() {
    m_abort = true;
    m_status->setText(ToQString(kSearchAbortedStatus));
    m_bar->setValue(0);
}

void wizSearch::Command2_Click() {
    m_abort = true;
    m_bar->setValue(0);
    CleanUp();
    if (m_searching) {
        // The search unwinds first; the window goes when it has.
        m_closing = true;
        return;
    }
    m_closing = true;
    close();
}

void wizSearch::closeEvent(QCloseEvent* event) {
    if (m_searching) {
        m_abort = true;
        m_closing = true;
        event->ignore();
        return;
    }
    if (!m_closing) {
        m_abort = true;
        CleanUp();
    }
    m_closing = false;
    QDialog::closeEvent(event);
}

void wizSearch::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        Command2_Click();
        return;
    }
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) &&
        !m_results->hasFocus()) {
        Command1_Click();
        return;
    }
    QDialog::keyPressEvent(event);
}

bool wizSearch::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        m_lastKey = static_cast<QKeyEvent*>(event)->key();
    }
    return QDialog::eventFilter(watched, event);
}

void wizSearch::Complete(QComboBox* combo, const QString& text) {
    const bool allowed = m_host.Options == nullptr || m_host.Options->Autocomplete != 0;
    if (!allowed || text.isEmpty() || m_lastKey == Qt::Key_Backspace ||
        m_lastKey == Qt::Key_Delete) {
        return;
    }
    const std::string typed = S(text);
    for (int i = 0; i < combo->count(); ++i) {
        const std::string item = S(combo->itemText(i));
        if (FindNoCase(item, typed) == 0) {
            QLineEdit* edit = combo->lineEdit();
            edit->setText(combo->itemText(i));
            edit->setSelection(static_cast<int>(text.size()),
                               static_cast<int>(combo->itemText(i).size() - text.size()));
            return;
        }
    }
}

void wizSearch::Combo1_Edited(const QString& text) {
    Complete(m_combo1, text);
    if (LiveSearchApplies()) {
        m_liveTimer->start();
    }
}

bool wizSearch::LiveSearchApplies() const {
    const bool on = m_host.Options == nullptr || m_host.Options->SearchAsYouType != 0;
    return on && m_host.Catalogue != nullptr &&
           IsCatalogueScope(ScopeOf(S(m_combo2->currentText())));
}

// The rows "Search" would give, put in place of those shown; no history and no setting moves.
// A large catalogue is searched through the index alone: until it is built (on its own thread,
// at the first search), the rows shown stay, and the search runs when it is ready.
void wizSearch::LiveSearch() {
    if (m_searching || m_catalogueChanging || !LiveSearchApplies()) {
        return;
    }
    const CatalogueView& catalogue = *m_host.Catalogue;
    KeepIndex();
    SearchForm form = Form();
    const SearchRequest request = RequestOf(form, NowCivil());
    const bool all = ScopeOf(form.LookIn) == SearchScope::VirtualDrives;
    const bool exact = m_host.Options != nullptr && m_host.Options->ExactTimes != 0;
    std::shared_ptr<const SearchIndex> index = m_index->ReadyShared();
    m_awaitingIndex = false;
    if (index == nullptr && !m_index->Unavailable() &&
        catalogue.TotalSongs() > kScanWhileTypingSongs) {
        m_awaitingIndex = true;
        return;
    }
    if (index != nullptr) {
        // The first screenful is found and shown at once; the rest of the catalogue is
        // searched, and its rows made, between turns of the event loop.
        auto found = std::make_shared<IndexedRows>(std::move(index), catalogue, request,
                                                   all ? "" : form.LookIn, ResultsPane::kFirstRows);
        if (found->End() == SearchEnd::Failed) {
            return;  // "Search" will say why
        }
        auto tally = std::make_shared<ResultsTally>(exact);
        m_liveTally = tally;
        m_results->ShowRowsInSlices([found, tally](RowList& rows, std::size_t most) {
            const std::size_t before = rows.size();
            const bool more = found->Next(rows, most);
            for (std::size_t r = before; r < rows.size(); ++r) {
                tally->Add(rows[r]);
            }
            return more;
        });
        return;
    }
    auto rows = std::make_shared<RowList>();
    SearchFront quiet;
    const CatalogueSearchEnd end =
        all ? SearchAllVirtualDrives(catalogue, request, *rows, quiet)
            : SearchVirtualFolder(catalogue, form.LookIn, request, *rows, quiet);
    if (end.End == SearchEnd::Failed) {
        return;
    }
    m_liveTally.reset();
    m_results->ShowRowsInSlices(
        [rows, next = std::size_t{0}](RowList& into, std::size_t most) mutable {
            if (next == 0) {
                into.reserve(into.size() + rows->size());
            }
            const std::size_t to = next + std::min(most, rows->size() - next);
            std::move(rows->begin() + static_cast<std::ptrdiff_t>(next),
                      rows->begin() + static_cast<std::ptrdiff_t>(to), std::back_inserter(into));
            next = to;
            return next < rows->size();
        });
}

void wizSearch::KeepIndex() {
    if (!m_index) {
        m_index = std::make_unique<SearchIndexKeeper>(*m_host.Catalogue, [this] {
            // On the building thread: the window's own thread takes it up.
            QMetaObject::invokeMethod(
                this, [this] { IndexReady(); }, Qt::QueuedConnection);
        });
    }
}

void wizSearch::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    PrepareIndex();
}

// The index is built as soon as the window looks in the catalogue, not at the first key.
void wizSearch::PrepareIndex() {
    if (!m_catalogueChanging && LiveSearchApplies()) {
        KeepIndex();
        m_index->Ready();
    }
}

void wizSearch::CatalogueChanging() {
    m_catalogueChanging = true;
    if (m_index) {
        m_index->CatalogueChanging();
    }
}

void wizSearch::CatalogueChanged() {
    m_catalogueChanging = false;
    if (m_index && LiveSearchApplies()) {
        m_index->CatalogueChanged();
    }
}

void wizSearch::IndexReady() {
    if (m_awaitingIndex) {
        m_awaitingIndex = false;
        LiveSearch();
    }
}

void wizSearch::Browse() {
    const std::string question = "Which folder should the Search Wizard look in?";
    std::string folder;
    if (m_host.ChooseFolder) {
        folder = m_host.ChooseFolder(question);
    } else {
        folder = S(QFileDialog::getExistingDirectory(this, ToQString(question)));
    }
    if (!folder.empty()) {
        m_combo2->setEditText(ToQString(folder));
    }
}

void wizSearch::SetOnTop(bool onTop) {
    const bool visible = isVisible();
    setWindowFlag(Qt::WindowStaysOnTopHint, onTop);
    if (visible) {
        show();
    }
}

}  // namespace jk
