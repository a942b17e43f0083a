#include "app/cli/ProgressLine.h"

#include <cstdio>

#include "platform/Terminal.h"
#include "util/Utf8.h"

namespace jk {

namespace {

constexpr auto kRedrawInterval = std::chrono::milliseconds(100);
// Longer texts would wrap on a narrow terminal, and "\r" would then clear only the last part.
constexpr std::size_t kLineWidth = 79;

}  // namespace

ProgressLine::ProgressLine(std::string label)
    : m_label(std::move(label)), m_enabled(StderrIsTerminal()) {}

ProgressLine::~ProgressLine() {
    Finish();
}

bool ProgressLine::Update(std::int64_t done, std::int64_t total) {
    if (m_enabled) {
        Draw(m_label + ": " + std::to_string(done) + "/" + std::to_string(total), done == total);
    }
    return true;
}

void ProgressLine::Show(std::string_view text) {
    if (m_enabled) {
        Draw(text, false);
    }
}

void ProgressLine::Draw(std::string_view text, bool always) {
    const auto now = std::chrono::steady_clock::now();
    if (m_drawn && !always && now - m_lastDraw < kRedrawInterval) {
        return;
    }
    m_lastDraw = now;
    m_drawn = true;
    const std::string_view shown = CharLeft(text, kLineWidth);
    std::fprintf(stderr, "\r\x1b[K%.*s", static_cast<int>(shown.size()), shown.data());
    std::fflush(stderr);
}

void ProgressLine::Finish() {
    if (m_drawn) {
        std::fputs("\r\x1b[K", stderr);
        std::fflush(stderr);
        m_drawn = false;
    }
}

StepProgress ProgressOn(ProgressLine& line) {
    return [&line](std::int64_t done, std::int64_t total) { return line.Update(done, total); };
}

}  // namespace jk
