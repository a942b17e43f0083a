#include "finders/ui/FinderWindows.h"

#include "finders/ui/wizDuplicate.h"
#include "finders/ui/wizSearch.h"

namespace jk {

namespace {

template <typename Window>
void OpenOnce(FinderHost& host, QWidget* parent) {
    Window* window = parent != nullptr ? parent->findChild<Window*>() : nullptr;
    if (window == nullptr) {
        window = new Window(host, parent);
        window->setAttribute(Qt::WA_DeleteOnClose);
    }
    window->show();
    window->raise();
    window->activateWindow();
}

}  // namespace

void OpenSearchWizard(FinderHost& host, QWidget* parent) {
    OpenOnce<wizSearch>(host, parent);
}

void OpenDuplicateFinder(FinderHost& host, QWidget* parent) {
    OpenOnce<wizDuplicate>(host, parent);
}

void FindersCatalogueChanging(QWidget* parent) {
    if (auto* search = parent != nullptr ? parent->findChild<wizSearch*>() : nullptr) {
        search->CatalogueChanging();
    }
    if (auto* dupes = parent != nullptr ? parent->findChild<wizDuplicate*>() : nullptr) {
        dupes->CatalogueChanging();
    }
}

void FindersCatalogueChanged(QWidget* parent) {
    if (auto* search = parent != nullptr ? parent->findChild<wizSearch*>() : nullptr) {
        search->CatalogueChanged();
    }
}

}  // namespace jk
