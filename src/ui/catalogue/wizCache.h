#pragma once

// The Cache Performance window: the cache's hit figures and size, and its commands Optimize,
// Flush, Reset statistics and Close; a look at every record through the cache viewer.

#include <functional>

#include <QDialog>
#include <QMessageBox>

class QLabel;
class QPushButton;

namespace jk {

class CachePerformance;

class wizCache final : public QDialog {
    Q_OBJECT

public:
    explicit wizCache(CachePerformance& performance, QWidget* parent = nullptr);

    // Replaces the questions' message boxes (tests): given the title and text, gives the
    // button pressed.
    using Asker = std::function<QMessageBox::StandardButton(const QString&, const QString&)>;
    void SetAsker(Asker ask) { m_ask = std::move(ask); }

    // The labels filled anew from the cache and the counters.
    void Fill();

private:
    void cmdOptimizeCache_Click();
    void Command3_Click();  // Flush
    void Command2_Click();  // Reset statistics
    void ViewCache_Click();
    bool AskYes(std::string_view title, std::string_view text);

    CachePerformance& m_performance;
    QLabel* m_hitAttempts = nullptr;
    QLabel* m_hits = nullptr;
    QLabel* m_misses = nullptr;
    QLabel* m_successRate = nullptr;
    QLabel* m_cacheSize = nullptr;
    Asker m_ask;
};

// Opens the Cache Performance window modally over `parent`.
void ShowCachePerformance(QWidget* parent, CachePerformance& performance);

}  // namespace jk
