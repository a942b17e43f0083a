#include "app/cli/ListCommandSupport.h"

#include <csignal>
#include <cstdio>

#include "app/CacheSaving.h"
#include "app/JsonLine.h"
#include "app/Session.h"
#include "app/SongLookup.h"
#include "app/cli/CliContext.h"
#include "app/cli/CliRegistry.h"
#include "app/cli/SongCommandSupport.h"
#include "platform/InstanceLock.h"
#include "playback/ListWriting.h"
#include "util/Text.h"

namespace jk {

namespace {

volatile std::sig_atomic_t g_interruptRequested = 0;

extern "C" void OnInterrupt(int /*signal*/) {
    g_interruptRequested = 1;
    std::signal(SIGINT, SIG_DFL);
}

// Tabs and line ends inside a text would break the columns.
void AppendCell(std::string& line, std::string_view text) {
    for (const char c : text) {
        line.push_back(c == '\t' || c == '\n' || c == '\r' ? ' ' : c);
    }
}

}  // namespace

void PrintRowHeader(bool json) {
    if (json) {
        return;
    }
    std::string line;
    for (const std::string_view caption : ColumnCaptions()) {
        if (!line.empty()) {
            line.push_back('\t');
        }
        line.append(caption);
    }
    PrintOut(line);
}

void PrintRow(const ListRow& row, bool json) {
    const auto& captions = ColumnCaptions();
    if (json) {
        JsonLine line;
        for (std::size_t column = 0; column < kColumnCount; ++column) {
            line.AddText(captions[column], row.Get(column));
        }
        PrintOut(line.Text());
        return;
    }
    std::string line;
    for (std::size_t column = 0; column < kColumnCount; ++column) {
        if (column > 0) {
            line.push_back('\t');
        }
        AppendCell(line, row.Get(column));
    }
    PrintOut(line);
}

InterruptStop::InterruptStop() {
    g_interruptRequested = 0;
    if (std::signal(SIGINT, OnInterrupt) == SIG_IGN) {
        std::signal(SIGINT, SIG_IGN);
    }
}

InterruptStop::~InterruptStop() {
    if (std::signal(SIGINT, SIG_DFL) == SIG_IGN) {
        std::signal(SIGINT, SIG_IGN);
    }
}

bool InterruptStop::Requested() const {
    return g_interruptRequested != 0;
}

LookupSaving::LookupSaving(CliContext& context, bool writeAccess) : m_context(context) {
    if (writeAccess) {
        return;
    }
    m_lock = std::make_unique<InstanceLock>(context.DataFolder());
    switch (m_lock->TryAcquire()) {
        case InstanceLock::Result::Acquired:
            break;
        case InstanceLock::Result::HeldElsewhere:
            m_whyNot = "Jukarra is running on " + context.DataFolder();
            break;
        case InstanceLock::Result::Failed:
            m_whyNot = m_lock->Error();
            break;
    }
}

LookupSaving::~LookupSaving() = default;

void LookupSaving::Begin(const Session& session) {
    m_attemptsBefore = session.Settings.TotalCacheHits;
}

int LookupSaving::Finish(Session& session) {
    if (session.Settings.TotalCacheHits == m_attemptsBefore) {
        return kExitOk;
    }
    if (!m_whyNot.empty()) {
        CliContext::Error(m_whyNot + "; the song cache and its counters were not saved");
        return kExitOk;
    }
    const IoResult saved = SaveLookupResults(session);
    if (!saved.ok) {
        CliContext::Error("cannot save the song cache: " + saved.error);
        return kExitFailed;
    }
    return kExitOk;
}

namespace {

// Marks where the lookups begin before any is made.
SongLookupContext BeginLookups(LookupSaving& saving, Session& session) {
    saving.Begin(session);
    return MakeSongLookupContext(session);
}

}  // namespace

SongLookupRun::SongLookupRun(CliContext& context, bool writeAccess)
    : m_saving(context, writeAccess),
      m_session(SongSession(context)),
      m_lookup(BeginLookups(m_saving, m_session)) {}

std::string SaveFailedLine(std::string_view reason) {
    const UserMessage message = SaveFailedMessage();
    std::string line = message.title + " " + message.text;
    if (!reason.empty()) {
        line += " (" + std::string(reason) + ")";
    }
    return line;
}

std::string ListErrorLine(std::string_view path, std::string_view error) {
    if (error.find(path) != std::string_view::npos) {
        return std::string(error);
    }
    return std::string(path) + ": " + std::string(error);
}

bool IsListFileName(std::string_view path) {
    const std::string lower = AsciiLower(path);
    return EndsWith(lower, ".m3u") || EndsWith(lower, ".m3u8");
}

}  // namespace jk
