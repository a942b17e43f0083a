#include "app/ui/MainWindow.h"

#include <QCloseEvent>
#include <QLabel>
#include <QSplitter>
#include <QStatusBar>

namespace jk {

Main::Main(QWidget* parent) : QMainWindow(parent) {
    setObjectName(QStringLiteral("Main"));
    // The three panes (folder tree, files, playlist) take their places in this splitter.
    auto* panes = new QSplitter(Qt::Horizontal, this);
    panes->setObjectName(QStringLiteral("Panes"));
    setCentralWidget(panes);

    m_panel5 = new QLabel(this);
    m_panel5->setObjectName(QStringLiteral("Panel5"));
    statusBar()->addWidget(m_panel5, 1);
}

void Main::SetCloseHandler(std::function<bool()> handler) {
    m_closeHandler = std::move(handler);
}

void Main::SetPanelText(const QString& text) {
    m_panel5->setText(text);
    if (isVisible()) {
        m_panel5->repaint();
    }
}

QString Main::PanelText() const {
    return m_panel5->text();
}

void Main::RaiseFromOtherStart() {
    if (isMinimized()) {
        showNormal();
    }
    show();
    raise();
    activateWindow();
}

void Main::closeEvent(QCloseEvent* event) {
    if (m_closeHandler && !m_closeHandler()) {
        event->ignore();
        return;
    }
    event->accept();
}

}  // namespace jk
