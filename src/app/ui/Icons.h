#pragma once

// Icons from the desktop theme, with fall-backs: the program's own drawings bundled in its
// resources, then the style's standard pixmaps, so that the toolbar never shows blank buttons
// on a desktop whose theme lacks an icon.

#include <string_view>

#include <QIcon>

namespace jk {

QIcon ThemeIcon(std::string_view name);
// The program's icon, for its windows and the tray.
QIcon ProgramIcon();
// On a desktop whose icon theme has no action icons (a bare X server, a minimal window
// manager), a full theme that is installed is taken as the fall-back theme.
void ChooseFallbackIconTheme();

}  // namespace jk
