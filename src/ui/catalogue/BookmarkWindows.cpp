#include "ui/catalogue/BookmarkWindows.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTableView>
#include <QToolBar>
#include <QVBoxLayout>

#include "ui/catalogue/BookmarkModel.h"
#include "ui/catalogue/DialogParts.h"

namespace jk {

wizBookmark::wizBookmark(const std::string& currentFolder, AddFn add, QWidget* parent)
    : QDialog(parent), m_add(std::move(add)) {
    setObjectName(QStringLiteral("wizBookmark"));
    setWindowTitle(QStringLiteral("New Bookmark"));
    setWindowIcon(ThemedIcon("bookmark-new"));
    m_name = new QLineEdit(ToQString(currentFolder));
    m_name->setObjectName(QStringLiteral("Text1"));
    m_name->selectAll();
    m_location = new QLineEdit(ToQString(currentFolder));
    m_location->setObjectName(QStringLiteral("Text2"));
    m_location->setMinimumWidth(360);
    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Friendly name:"), m_name);
    form->addRow(QStringLiteral("Location:"), m_location);

    QPushButton* ok = DialogButton("OK", "Command1");
    ok->setDefault(true);
    QPushButton* cancel = DialogButton("Cancel", "Command2");
    auto* buttons = new QDialogButtonBox;
    buttons->addButton(ok, QDialogButtonBox::AcceptRole);
    buttons->addButton(cancel, QDialogButtonBox::RejectRole);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(ok, &QPushButton::clicked, this, [this] {
        if (m_add) {
            m_add({ToStdString(m_name->text()), ToStdString(m_location->text())});
        }
        accept();
    });

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);
}

Bookmarks::Bookmarks(const BookmarkList& bookmarks, ApplyFn apply, JumpFn jump, QWidget* parent)
    : QDialog(parent), m_apply(std::move(apply)), m_jump(std::move(jump)) {
    setObjectName(QStringLiteral("Bookmarks"));
    setWindowTitle(QStringLiteral("Bookmarks"));
    setWindowIcon(ThemedIcon("bookmarks"));

    m_model = new BookmarkModel(bookmarks, this);
    m_view = new QTableView;
    m_view->setObjectName(QStringLiteral("ListView1"));
    m_view->setModel(m_model);
    m_view->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_view->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->verticalHeader()->hide();
    m_view->horizontalHeader()->setStretchLastSection(true);
    m_view->horizontalHeader()->setSectionsClickable(true);
    m_view->setColumnWidth(0, 200);
    m_view->setShowGrid(false);
    m_view->setAlternatingRowColors(true);
    m_view->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_view->horizontalHeader(), &QHeaderView::sectionClicked, this,
            [this](int column) { m_model->SortByColumn(column); });
    connect(m_view, &QTableView::doubleClicked, this, [this](const QModelIndex& index) {
        if (m_jump && index.isValid()) {
            m_jump(m_model->Bookmarks()[static_cast<std::size_t>(index.row())].Location);
        }
    });

    struct Key {
        const char* key;
        const char* icon;
        const char* tip;
        jk::Slide slide;
    };
    const Key keys[] = {{"up", "go-up", "Slide up", jk::Slide::Up},
                        {"down", "go-down", "Slide down", jk::Slide::Down},
                        {"top", "go-top", "Slide to top", jk::Slide::Top},
                        {"bottom", "go-bottom", "Slide to bottom", jk::Slide::Bottom}};
    auto* toolbar = new QToolBar;
    toolbar->setObjectName(QStringLiteral("Toolbar1"));
    toolbar->setIconSize(QSize(16, 16));
    for (const Key& key : keys) {
        QAction* action = toolbar->addAction(ThemedIcon(key.icon), QLatin1String(key.tip));
        action->setObjectName(QLatin1String(key.key));
        const jk::Slide slide = key.slide;
        connect(action, &QAction::triggered, this, [this, slide] { Slide(slide); });
    }

    m_menu = new QMenu(this);
    m_menu->setObjectName(QStringLiteral("mBookmark"));
    const struct {
        const char* name;
        const char* caption;
        jk::Slide slide;
    } items[] = {{"SlideUp", "Slide &up", jk::Slide::Up},
                 {"SlideDown", "Slide &down", jk::Slide::Down},
                 {"SlideTop", "Slide to &top", jk::Slide::Top},
                 {"SlideBottom", "Slide to &bottom", jk::Slide::Bottom}};
    for (const auto& item : items) {
        QAction* action = m_menu->addAction(QLatin1String(item.caption));
        action->setObjectName(QLatin1String(item.name));
        const jk::Slide slide = item.slide;
        connect(action, &QAction::triggered, this, [this, slide] { Slide(slide); });
    }
    m_menu->addSeparator();
    QAction* remove =
        m_menu->addAction(ThemedIcon("edit-delete"), QStringLiteral("&Remove bookmark"));
    remove->setObjectName(QStringLiteral("Remove"));
    remove->setShortcut(QKeySequence::Delete);
    remove->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    addAction(remove);
    connect(remove, &QAction::triggered, this, &Bookmarks::RemoveSelected);
    connect(m_view, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& at) { m_menu->popup(m_view->viewport()->mapToGlobal(at)); });

    QPushButton* close = DialogButton("Close", "Command1");
    close->setDefault(true);
    auto* buttons = new QDialogButtonBox;
    buttons->addButton(close, QDialogButtonBox::RejectRole);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(toolbar);
    layout->addWidget(m_view, 1);
    layout->addWidget(buttons);
    resize(560, 380);
}

std::vector<bool> Bookmarks::SelectedRows() const {
    std::vector<bool> rows(m_model->Bookmarks().size(), false);
    for (const QModelIndex& index : m_view->selectionModel()->selectedRows()) {
        rows[static_cast<std::size_t>(index.row())] = true;
    }
    return rows;
}

void Bookmarks::Select(const std::vector<bool>& rows) {
    QItemSelection selection;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        if (rows[row]) {
            const int r = static_cast<int>(row);
            selection.select(m_model->index(r, 0), m_model->index(r, 1));
        }
    }
    m_view->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
}

void Bookmarks::Slide(jk::Slide slide) {
    std::vector<bool> rows = SelectedRows();
    m_model->SlideRows(rows, slide);
    Select(rows);
}

void Bookmarks::RemoveSelected() {
    m_model->RemoveRows(SelectedRows());
}

void Bookmarks::done(int result) {
    if (m_apply) {
        m_apply(m_model->Bookmarks());
        m_apply = nullptr;  // once, however many times the window is closed
    }
    QDialog::done(result);
}

}  // namespace jk
