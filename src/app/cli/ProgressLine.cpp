#include "app/cli/ProgressLine.h"

#include <cstdio>

#include "platform/Terminal.h"

namespace jk {

namespace {

constexpr auto kRedrawInterval = std::chrono::milliseconds(100);

}  // namespace

ProgressLine::ProgressLine(std::string label)
    : m_label(std::move(label)), m_enabled(StderrIsTerminal()) {}

ProgressLine::~ProgressLine() {
    Finish();
}

bool ProgressLine::Update(std::int64_t done, std::int64_t total) {
    if (!m_enabled) {
        return true;
    }
    const auto now = std::chrono::steady_clock::now();
    if (m_drawn && done != total && now - m_lastDraw < kRedrawInterval) {
        return true;
    }
    m_lastDraw = now;
    m_drawn = true;
    std::fprintf(stderr, "\r\x1b[K%s: %lld/%lld", m_label.c_str(), static_cast<long long>(done),
                 static_cast<long long>(total));
    std::fflush(stderr);
    return true;
}

void ProgressLine::Finish() {
    if (m_drawn) {
        std::fputs("\r\x1b[K", stderr);
        std::fflush(stderr);
        m_drawn = false;
    }
}

}  // namespace jk
