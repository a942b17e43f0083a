#pragma once

// The progress of long work as one line on standard error, redrawn in place at most about ten
// times a second, and only when standard error is a terminal (so logs and pipes stay clean).
// Output and error lines share the terminal with it: clear it before writing one.

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

#include "app/SessionData.h"

namespace jk {

class ProgressLine {
public:
    explicit ProgressLine(std::string label = {});
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    // Shows "label: done/total"; the last step is always drawn. Never asks to stop.
    bool Update(std::int64_t done, std::int64_t total);
    // Shows a status text of its own, cut to the width of a narrow terminal.
    void Show(std::string_view text);
    // Clears the line.
    void Finish();

private:
    void Draw(std::string_view text, bool always);

    std::string m_label;
    bool m_enabled = false;
    bool m_drawn = false;
    std::chrono::steady_clock::time_point m_lastDraw;
};

// A progress callable for long work, drawing on `line`.
StepProgress ProgressOn(ProgressLine& line);

}  // namespace jk
