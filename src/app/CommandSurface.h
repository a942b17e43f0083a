#pragma once

// The main window's command surface as data: the menu tree with its pop-ups and the tray menu,
// in their order, each item with its caption and access key, its shortcut and icon; and the
// toolbar's buttons by key. The window builds its menus and toolbar from these tables and binds
// a handler to each item by name; an item without a handler is shown disabled. A command that
// another part of the program brings names that part as its owner, so that the table says at a
// glance what is still to be wired.

#include <cstdint>
#include <span>
#include <string_view>

namespace jk {

enum class MenuEntryKind : std::uint8_t {
    Menu,       // opens a menu or a sub-menu; the entries whose Parent names it follow it
    Item,       // a command
    Separator,  // a line between groups of items
    List,       // Count items whose captions are set at run time (recent lists, Go list)
};

// Where a menu without a parent stands.
enum class MenuPlace : std::uint8_t { MenuBar, Popup };

struct MenuEntry {
    MenuEntryKind Kind = MenuEntryKind::Item;
    std::string_view Name;     // the item's name; a handler is named after it with "_Click"
    std::string_view Caption;  // "&" marks the access key, "&&" is a plain "&"
    std::string_view Parent;   // the menu it belongs to; "" for a menu of its own
    MenuPlace Place = MenuPlace::MenuBar;
    std::string_view Shortcut;  // in the portable form ("Ctrl+N"), "" for none
    std::string_view Icon;      // the desktop theme's icon name, "" for none
    // The part of the program that brings this command: "" when the main window does.
    std::string_view Owner;
    int Count = 0;  // for a List: how many items it holds
    bool Checkable = false;
};

// Every menu, sub-menu, pop-up and item in order, separators included.
std::span<const MenuEntry> MenuTable();
// The entry of that name (separators have none); null when there is none.
const MenuEntry* FindMenuEntry(std::string_view name);

struct ToolbarButton {
    std::string_view Key;      // the key Toolbar1_ButtonClick acts on
    std::string_view Command;  // the menu item it runs; "" for a command of the toolbar alone
    std::string_view ToolTip;
    std::string_view Icon;
    std::string_view Owner;   // as for menu entries, for a toolbar-only command
    bool GroupStart = false;  // a separator stands before it
    bool Checkable = false;
};

// Toolbar1's buttons, in order.
std::span<const ToolbarButton> ToolbarTable();

// The owners of commands that other parts of the program wire.
inline constexpr std::string_view kOwnerPlay = "play";
inline constexpr std::string_view kOwnerVirtualDrives = "vdrive";
inline constexpr std::string_view kOwnerFinders = "finders";
inline constexpr std::string_view kOwnerTagging = "tagging";
inline constexpr std::string_view kOwnerPublishing = "publishing";
inline constexpr std::string_view kOwnerSetup = "setup";
// Reserved entries: they stand in their menus, hidden, and nothing runs them.
inline constexpr std::string_view kOwnerReserved = "reserved";

}  // namespace jk
