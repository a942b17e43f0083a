#include "app/ui/DesktopFront.h"

#include <cstdio>
#include <vector>

#include <QAction>
#include <QGuiApplication>
#include <QScreen>

#include "app/Session.h"
#include "app/WindowPlacement.h"
#include "app/ui/MainPlayer.h"
#include "app/ui/MainWindow.h"
#include "app/ui/Splash.h"
#include "ui/common/MessageBoxes.h"
#include "ui/common/QtText.h"

namespace jk {

namespace {

// The available areas of the screens, the window's own (or the primary) first.
std::vector<PixelRect> AvailableAreas(const QWidget& window) {
    std::vector<PixelRect> areas;
    const QScreen* own =
        window.screen() != nullptr ? window.screen() : QGuiApplication::primaryScreen();
    if (own != nullptr) {
        const QRect area = own->availableGeometry();
        areas.push_back({area.x(), area.y(), area.width(), area.height()});
    }
    for (const QScreen* screen : QGuiApplication::screens()) {
        if (screen != own) {
            const QRect area = screen->availableGeometry();
            areas.push_back({area.x(), area.y(), area.width(), area.height()});
        }
    }
    return areas;
}

PixelRect AvailableArea(const QWidget& window) {
    const QScreen* screen =
        window.screen() != nullptr ? window.screen() : QGuiApplication::primaryScreen();
    if (screen == nullptr) {
        return {};
    }
    const QRect area = screen->availableGeometry();
    return {area.x(), area.y(), area.width(), area.height()};
}

void ApplyRect(QWidget& window, const PixelRect& rect) {
    window.move(rect.x, rect.y);
    window.resize(rect.width, rect.height);
}

// Room for the three panes and the toolbar.
constexpr MinimumSize kMainMinimum{560, 400};

}  // namespace

DesktopFront::DesktopFront(Session& session, Splash& splash, Main& main)
    : m_session(session), m_splash(splash), m_main(main) {}

QWidget* DesktopFront::MessageParent() const {
    if (m_main.isVisible()) {
        return &m_main;
    }
    return m_splash.isVisible() ? &m_splash : nullptr;
}

void DesktopFront::ShowAsSaved() {
    if (m_session.Settings.State == 2) {
        m_main.showMaximized();
    } else {
        m_main.show();
    }
}

void DesktopFront::SetStatus(std::string_view text) {
    m_splash.SetStatus(ToQString(text));
}

void DesktopFront::ClearProgress() {
    m_splash.ClearProgress();
}

bool DesktopFront::ShowProgress(std::int64_t done, std::int64_t total) {
    if (m_session.Starting != 0) {
        m_splash.ShowProgress(done, total);
    }
    return true;
}

void DesktopFront::PrepareMainWindow(std::string_view caption) {
    m_main.setWindowTitle(ToQString(caption));
}

void DesktopFront::SetMainEnabled(bool enabled) {
    m_main.setEnabled(enabled);
}

void DesktopFront::ShowMain() {
    ApplyRect(m_main, PlaceSavedWindow(m_session.Settings, AvailableAreas(m_main), kMainMinimum));
    ShowAsSaved();
    m_main.repaint();
}

void DesktopFront::CloseSplash() {
    m_splash.close();
}

void DesktopFront::ShowWelcome(const UserMessage& message) {
    ShowMessage(message);
}

void DesktopFront::PlaceMain() {
    ApplyRect(m_main, CentreSavedWindow(m_session.Settings, AvailableArea(m_main), kMainMinimum));
}

void DesktopFront::RunSetupBrowser() {
    if (setupBrowser) {
        setupBrowser();
    }
}

void DesktopFront::PlaceVerticalSplitter(std::int16_t /*splitLeft*/) {
    m_main.PlaceSplitters();
}

void DesktopFront::AlignSplitters() {
    m_main.PlaceSplitters();
}

void DesktopFront::ShowGridLines(bool on) {
    m_main.ShowGridLines(on);
}

void DesktopFront::CheckOnTop(bool checked) {
    if (QAction* onTop = m_main.Action("OnTop")) {
        onTop->setChecked(checked);
    }
}

void DesktopFront::SetTop() {
    m_main.SetTop();
}

void DesktopFront::ApplyColumnOrders(std::string_view files, std::string_view playlist) {
    m_main.ApplyColumnOrders(std::string(files), std::string(playlist));
}

void DesktopFront::UpdatePlayerMode(const PlayerMode& mode) {
    ShowPlayerMode(m_main, mode);
}

void DesktopFront::SetIntroPlayPressed(bool pressed) {
    if (QAction* button = m_main.ToolbarButton("introplay")) {
        button->setChecked(pressed);
    }
}

void DesktopFront::UpdateWindowsMode(bool trayIcon) {
    m_main.UpdateWindowsMode(trayIcon);
}

void DesktopFront::SetViewChecks(bool files, bool folders, bool playlist) {
    m_main.SetViewChecks(files, folders, playlist);
}

void DesktopFront::ShowTips() {
    if (!m_unattended) {
        m_main.Tips_Click();
    }
}

void DesktopFront::RemoveTrayIcons() {
    m_main.UpdateWindowsMode(false);
}

void DesktopFront::LoadVirtualFolders() {
    // The drive roots first; the catalogued discs join them as roots of their own.
    m_main.InitializeTree();
}

void DesktopFront::UpdateBookmarks() {
    if (updateBookmarks) {
        updateBookmarks();
    }
}

void DesktopFront::OpenFolder(std::string_view path) {
    m_main.OpenFolder(std::string(path));
}

void DesktopFront::UpdateLastLists() {
    m_main.UpdateLastLists();
}

void DesktopFront::ListStats() {
    // Start-up read the last playlist into the rows before the pane was in use.
    m_main.PlaylistFilledOutside();
    m_main.ListStats();
}

void DesktopFront::ShowMainIfHidden() {
    if (!m_main.isVisible()) {
        ShowAsSaved();
    }
}

void DesktopFront::StoreWindowPosition(jk::Settings& settings) {
    if (!m_main.isMinimized()) {
        SaveWindowEdges(settings, m_main.x(), m_main.y());
    }
}

void DesktopFront::SetPanelText(std::string_view text) {
    m_main.SetPanelText(ToQString(text));
}

SaveAnswer DesktopFront::AskSaveList(const UserMessage& question) {
    return AskYesNoCancel(MessageParent(), question, BoxIcon(question.icon));
}

bool DesktopFront::AskYesNo(const UserMessage& question) {
    return AskInBox(MessageParent(), question, BoxIcon(question.icon),
                    QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes) == QMessageBox::Yes;
}

void DesktopFront::SaveListClick() {
    if (saveList) {
        saveList();
    }
}

void DesktopFront::StoreWindowLayout(jk::Settings& settings) {
    m_main.StoreLayout(settings);
    // The size of the normal window, also when it is maximized.
    const bool maximized = m_main.isMaximized();
    const QSize size = maximized ? m_main.normalGeometry().size() : m_main.size();
    SaveWindowSize(settings, size.width(), size.height(), maximized);
}

void DesktopFront::ShowPlaylistCaption() {
    m_main.setWindowTitle(QString::fromStdString(PlaylistCaption(m_session)));
}

void DesktopFront::ShowMessage(const UserMessage& message) {
    if (m_unattended) {
        std::fprintf(stderr, "jukarra: %s %s\n", message.title.c_str(), message.text.c_str());
        return;
    }
    ShowMessageBox(MessageParent(), message, BoxIcon(message.icon));
}

}  // namespace jk
