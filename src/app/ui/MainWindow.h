#pragma once

// The main window, `Main`. For now it carries the caption, the status bar's panel 5 and the
// window geometry; its panes, menus and commands join it as they are built. Closing it runs
// the shutdown sequence, which may keep it open.

#include <functional>

#include <QMainWindow>

class QLabel;
class QCloseEvent;

namespace jk {

class Main final : public QMainWindow {
    Q_OBJECT

public:
    explicit Main(QWidget* parent = nullptr);

    // Asked on every close; false keeps the window open.
    void SetCloseHandler(std::function<bool()> handler);
    // Panel 5 of the status bar.
    void SetPanelText(const QString& text);
    QString PanelText() const;
    // Brings the window to the front when a second start of the program asks for it.
    void RaiseFromOtherStart();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    std::function<bool()> m_closeHandler;
    QLabel* m_panel5 = nullptr;
};

}  // namespace jk
