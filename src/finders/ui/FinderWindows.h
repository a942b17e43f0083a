#pragma once

// Opening the finders from the main window. Each of its three commands is one line, with the
// host the main window fills from its session, panes, file operations and player:
//     m_main.Wire("Wizard_Search", [this] { OpenSearchWizard(Finders(), &m_main); });
//     m_main.Wire("DupeWiz", [this] { OpenDuplicateFinder(Finders(), &m_main); });
//     m_main.Wire("Wizard_Selection", [this] { RunSelectionWizard(Finders(), &m_main); });
// (the toolbar key "search" runs "Wizard_Search"). RunSelectionWizard is in wizSelect.h.

#include "finders/ui/FinderHost.h"

class QWidget;

namespace jk {

// Shows the Search Wizard beside `parent`, non-modal: the one already open comes to the front.
void OpenSearchWizard(FinderHost& host, QWidget* parent);
// The same for the Duplicate Finder.
void OpenDuplicateFinder(FinderHost& host, QWidget* parent);

}  // namespace jk
