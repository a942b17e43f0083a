#pragma once

// The progress of long work as one line on standard error, redrawn in place, and only when
// standard error is a terminal (so logs and pipes stay clean).

#include <chrono>
#include <cstdint>
#include <string>

namespace jk {

class ProgressLine {
public:
    explicit ProgressLine(std::string label);
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    // Shows "label: done/total" (at most about ten times a second); never asks to stop.
    bool Update(std::int64_t done, std::int64_t total);
    // Clears the line.
    void Finish();

private:
    std::string m_label;
    bool m_enabled = false;
    bool m_drawn = false;
    std::chrono::steady_clock::time_point m_lastDraw;
};

}  // namespace jk
