#pragma once

// Opening the finders beside the main window; app/ui/MainFinders.h wires "Wizard_Search" (and
// so the toolbar key "search"), "DupeWiz" and "Wizard_Selection" (RunSelectionWizard, in
// wizSelect.h) to them over the host it fills.

#include "finders/ui/FinderHost.h"

class QWidget;

namespace jk {

// Shows the Search Wizard beside `parent`, non-modal: the one already open comes to the front.
void OpenSearchWizard(FinderHost& host, QWidget* parent);
// The same for the Duplicate Finder.
void OpenDuplicateFinder(FinderHost& host, QWidget* parent);

// Before and after the catalogue changes: the Search Wizard open beside `parent` holds its
// index's build off the catalogue meanwhile, and the Duplicate Finder makes the rows it still
// reads from the catalogue first.
void FindersCatalogueChanging(QWidget* parent);
void FindersCatalogueChanged(QWidget* parent);

}  // namespace jk
