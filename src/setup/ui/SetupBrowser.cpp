#include "setup/ui/SetupBrowser.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QStackedWidget>
#include <QStyle>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "app/Session.h"
#include "ui/common/QtText.h"

namespace jk {

namespace {

constexpr int kKeyRole = Qt::UserRole + 1;

struct PageIcon {
    std::string_view key;
    const char* themeNames[2];
    QStyle::StandardPixmap fallback;
};

// The desktop theme's icon for each category (the first name the theme has), else the style's.
constexpr PageIcon kPageIcons[] = {
    {"mPlayer", {"multimedia-player", "audio-x-generic"}, QStyle::SP_MediaVolume},
    {"mIntro", {"media-playback-start", "media-seek-forward"}, QStyle::SP_MediaPlay},
    {"mDelay", {"chronometer", "appointment-soon"}, QStyle::SP_MediaPause},
    {"mLoading", {"document-import", "document-open"}, QStyle::SP_DialogOpenButton},
    {"mSystem", {"media-playlist-shuffle", "preferences-system"}, QStyle::SP_BrowserReload},
    {"mPlaylist", {"view-media-playlist", "audio-x-mpegurl"}, QStyle::SP_FileDialogListView},
    {"mCache", {"drive-harddisk", "media-flash"}, QStyle::SP_DriveHDIcon},
    {"mShutdown", {"system-shutdown", "application-exit"}, QStyle::SP_DialogCloseButton},
    {"mInterface", {"input-mouse", "preferences-desktop-peripherals"}, QStyle::SP_DesktopIcon},
    {"mView", {"view-list-details", "view-list-text"}, QStyle::SP_FileDialogDetailedView},
    {"mOptimize", {"run-build", "system-run"}, QStyle::SP_BrowserReload},
    {"mLayout", {"view-split-left-right", "view-dual-symbolic"}, QStyle::SP_TitleBarNormalButton},
    {"mAutocomplete", {"insert-text", "edit-find"}, QStyle::SP_FileDialogContentsView},
    {"mAdvanced", {"preferences-other", "applications-system"}, QStyle::SP_ComputerIcon},
};

QIcon PageIconOf(std::string_view key, const QStyle& style) {
    for (const PageIcon& icon : kPageIcons) {
        if (icon.key != key) {
            continue;
        }
        for (const char* name : icon.themeNames) {
            if (QIcon::hasThemeIcon(QLatin1String(name))) {
                return QIcon::fromTheme(QLatin1String(name));
            }
        }
        return style.standardIcon(icon.fallback);
    }
    return {};
}

// A page in a frameless scroll area, so that a small screen still reaches all its controls.
QScrollArea* Scrolled(QWidget* page) {
    auto* scroll = new QScrollArea;
    scroll->setWidget(page);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    return scroll;
}

}  // namespace

SetupBrowser::SetupBrowser(Session& session, SetupEffects& effects, QWidget* parent)
    : QDialog(parent), m_session(session), m_effects(effects) {
    setObjectName(QStringLiteral("SetupBrowser"));
    setWindowTitle(ToQString(kSetupCaption));

    auto* categories = new QVBoxLayout;
    auto* categoryLabel = new QLabel(ToQString(kCategoryLabel));
    m_tree = new QTreeWidget;
    m_tree->setObjectName(QStringLiteral("Tree1"));
    m_tree->setHeaderHidden(true);
    m_tree->setRootIsDecorated(false);
    m_tree->setIconSize(QSize(22, 22));
    m_tree->setFixedWidth(190);
    categoryLabel->setBuddy(m_tree);
    categories->addWidget(categoryLabel);
    categories->addWidget(m_tree);

    m_caption = new QLabel;
    m_caption->setObjectName(QStringLiteral("caption"));
    QFont captionFont = m_caption->font();
    captionFont.setPointSizeF(captionFont.pointSizeF() * 1.3);
    captionFont.setBold(true);
    m_caption->setFont(captionFont);
    auto* rule = new QFrame;
    rule->setFrameShape(QFrame::HLine);
    rule->setFrameShadow(QFrame::Sunken);
    m_pages = new QStackedWidget;

    auto* page = new QVBoxLayout;
    page->addWidget(m_caption);
    page->addWidget(rule);
    page->addWidget(m_pages, 1);

    auto* body = new QHBoxLayout;
    body->setSpacing(16);
    body->addLayout(categories);
    body->addLayout(page, 1);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    QPushButton* okay = buttons->button(QDialogButtonBox::Ok);
    okay->setText(ToQString(kOkayCaption));
    okay->setObjectName(QStringLiteral("Command1"));
    QPushButton* cancel = buttons->button(QDialogButtonBox::Cancel);
    cancel->setText(ToQString(kCancelCaption));
    cancel->setObjectName(QStringLiteral("Command2"));
    connect(buttons, &QDialogButtonBox::accepted, this, &SetupBrowser::Command1_Click);
    connect(buttons, &QDialogButtonBox::rejected, this, &SetupBrowser::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(body, 1);
    layout->addWidget(buttons);

    LoadTree();
    Initialize();
    connect(m_tree, &QTreeWidget::currentItemChanged, this,
            [this](QTreeWidgetItem* node) { Tree1_NodeClick(node); });
    connect(m_controls.BrowseButton(), &QPushButton::clicked, this, &SetupBrowser::Command3_Click);
    m_controls.onCheckToggled = [this] { UpdateDependents(); };
    m_tree->setCurrentItem(m_tree->topLevelItem(0));
    resize(780, 540);
}

void SetupBrowser::LoadTree() {
    for (const SetupPage& page : SetupPages()) {
        auto* node = new QTreeWidgetItem(m_tree, QStringList(ToQString(page.text)));
        node->setData(0, kKeyRole, ToQString(page.key));
        node->setIcon(0, PageIconOf(page.key, *style()));
        m_pages->addWidget(Scrolled(m_controls.BuildPage(page)));
    }
}

void SetupBrowser::Initialize() {
    m_controls.Fill(InitializeSetupForm(m_session.Settings));
    UpdateDependents();
}

void SetupBrowser::Tree1_NodeClick(QTreeWidgetItem* node) {
    if (node == nullptr) {
        return;
    }
    const int index = m_tree->indexOfTopLevelItem(node);
    m_pages->setCurrentIndex(index);
    m_caption->setText(ToQString(SetupPages()[static_cast<std::size_t>(index)].caption));
}

void SetupBrowser::ShowPage(std::string_view key) {
    for (int i = 0; i < m_tree->topLevelItemCount(); ++i) {
        if (m_tree->topLevelItem(i)->data(0, kKeyRole).toString() == ToQString(key)) {
            m_tree->setCurrentItem(m_tree->topLevelItem(i));
        }
    }
}

QString SetupBrowser::CurrentPageKey() const {
    const QTreeWidgetItem* node = m_tree->currentItem();
    return node != nullptr ? node->data(0, kKeyRole).toString() : QString();
}

void SetupBrowser::UpdateDependents() {
    m_controls.ApplyEnabled(m_controls.Read());
}

void SetupBrowser::Command1_Click() {
    SetupOkay(m_session, m_controls.Read(), m_effects);
    accept();
}

void SetupBrowser::Command3_Click() {
    const QString chosen = ChoosePlayer(m_controls.PlayerList()->currentText());
    if (!chosen.isEmpty()) {
        m_controls.PlayerList()->setEditText(chosen);
    }
}

QString SetupBrowser::ChoosePlayer(const QString& current) {
    if (m_choosePlayer) {
        return m_choosePlayer(current);
    }
    const QFileInfo player(current.trimmed());
    const QString folder = player.isAbsolute() ? player.absolutePath() : QStringLiteral("/usr/bin");
    return QFileDialog::getOpenFileName(this, tr("Choose the player"), folder);
}

bool RunSetupBrowser(QWidget* parent, Session& session, SetupEffects& effects) {
    SetupBrowser browser(session, effects, parent);
    return browser.exec() == QDialog::Accepted;
}

}  // namespace jk
