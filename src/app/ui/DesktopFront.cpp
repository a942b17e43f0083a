#include "app/ui/DesktopFront.h"

#include <cstdio>

#include <QGuiApplication>
#include <QMessageBox>
#include <QScreen>

#include "app/Session.h"
#include "app/WindowPlacement.h"
#include "app/ui/MainWindow.h"
#include "app/ui/Splash.h"

namespace jk {

namespace {

QString FromView(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QMessageBox::Icon IconOf(MessageIcon icon) {
    switch (icon) {
        case MessageIcon::Information:
            return QMessageBox::Information;
        case MessageIcon::Question:
            return QMessageBox::Question;
        case MessageIcon::Warning:
            return QMessageBox::Warning;
        case MessageIcon::Critical:
            return QMessageBox::Critical;
        case MessageIcon::None:
            break;
    }
    return QMessageBox::NoIcon;
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
    m_splash.SetStatus(FromView(text));
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
    m_main.setWindowTitle(FromView(caption));
}

void DesktopFront::SetMainEnabled(bool enabled) {
    m_main.setEnabled(enabled);
}

void DesktopFront::ShowMain() {
    ApplyRect(m_main, PlaceSavedWindow(m_session.Settings, AvailableArea(m_main)));
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
    ApplyRect(m_main, CentreSavedWindow(m_session.Settings, AvailableArea(m_main)));
}

void DesktopFront::RunSetupBrowser() {
    if (setupBrowser) {
        setupBrowser();
    }
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
    m_main.SetPanelText(FromView(text));
}

SaveAnswer DesktopFront::AskSaveList(const UserMessage& question) {
    QMessageBox box(IconOf(question.icon), QString::fromStdString(question.title),
                    QString::fromStdString(question.text),
                    QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, MessageParent());
    box.setDefaultButton(QMessageBox::Yes);
    box.setEscapeButton(QMessageBox::Cancel);
    switch (box.exec()) {
        case QMessageBox::Yes:
            return SaveAnswer::Yes;
        case QMessageBox::No:
            return SaveAnswer::No;
        default:
            return SaveAnswer::Cancel;
    }
}

bool DesktopFront::AskYesNo(const UserMessage& question) {
    QMessageBox box(IconOf(question.icon), QString::fromStdString(question.title),
                    QString::fromStdString(question.text), QMessageBox::Yes | QMessageBox::No,
                    MessageParent());
    box.setDefaultButton(QMessageBox::Yes);
    return box.exec() == QMessageBox::Yes;
}

void DesktopFront::SaveListClick() {
    if (saveList) {
        saveList();
    }
}

void DesktopFront::StoreWindowLayout(jk::Settings& settings) {
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
    QMessageBox box(IconOf(message.icon), QString::fromStdString(message.title),
                    QString::fromStdString(message.text), QMessageBox::Ok, MessageParent());
    box.exec();
}

}  // namespace jk
