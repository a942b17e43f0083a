#pragma once

// What the vdrive, bookmark and eject commands share: the session with the platform's discs
// and eject bound, the front that prints the catalogue's messages, and the save that ends a
// changing command as the shutdown would.

#include <string>
#include <string_view>

#include "app/VirtualDrives.h"
#include "app/cli/ProgressLine.h"

namespace jk {

class CliContext;
struct Session;

// Prints messages on standard error and the scan's caption as a progress line; Ctrl-C stops.
class CliVirtualFront final : public VirtualFront {
public:
    void SetStatus(std::string_view text) override;
    bool Progress(std::string_view caption, int value, int maximum) override;
    void ShowMessage(const UserMessage& message) override;
    bool Told() const { return m_told; }

private:
    ProgressLine m_line;
    bool m_told = false;
};

// The started session with the discs of this machine, the eject, and the test hook of the
// save (JUKARRA_TEST_KILL_AT_SAVE_STEP=N kills the process at step N of every save).
Session& VirtualSession(CliContext& context);

// For a changing command: the data folder held, and a catalogue that loaded whole (else
// "vdrive restore" is the way). False after one line on standard error.
bool MayChangeCatalogue(CliContext& context, Session& session);

// The end of a changing command: without SafeCatalogue, the shutdown's backup and save. The exit
// status.
int SaveCatalogueAsShutdown(Session& session, CliVirtualFront& front);

}  // namespace jk
