#pragma once

// The small windows over the session, each opened modally by one command of the main window.

class QWidget;

namespace jk {

struct Session;

// CacheWizard_Click: Cache Performance over the session's song cache, its counters, its limit
// and ExpireMode.
void RunCacheWizard(QWidget* parent, Session& session);

// SilentMP3Wiz_Click: the Silent MP3 Wizard, writing into the data folder.
void RunSilentWizard(QWidget* parent, const Session& session);

}  // namespace jk
