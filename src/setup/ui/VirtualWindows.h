#pragma once

// The virtual-drive and bookmark windows over the session, each opened modally by one command
// of the main window (its menu item, toolbar key or tree command):
//   VirtualCreate_Click and the toolbar's "addvdrive"   RunVirtualCreate
//   VirtualUpdate_Click, VirtualRemove_Click, VirtualRename_Click
//                                                       RunVirtualUpdate, ..Remove, ..Rename
//   VirtualExport_Click, VirtualImport_Click            RunVirtualExport, RunVirtualImport
//   VirtualStats_Click                                   RunVirtualSummary
//   Bookmark_Add_Click                                   RunBookmarkAdd
//   Bookmark_Edit_Click, MoreBMarks_Click, "bookmarks"  RunBookmarkEditor
// Those that change the catalogue return true; the main window then rebuilds the virtual roots
// of its tree from Session::VirtualTrees. Those on bookmarks leave Session::Bookmarks changed
// and the main window rebuilds its Bookmarks menu (BookmarkMenuCaptions).
//
// The main window's side (its command table, the tree's virtual roots, the disc watch and the
// Bookmarks menu) is app/ui/VirtualDriveWiring.

#include <functional>
#include <string>
#include <string_view>

class QWidget;

namespace jk {

struct Session;
class FolderLister;
class MessageFront;

// Status panel 5 of the main window; may be empty.
using StatusFn = std::function<void(std::string_view text)>;

bool RunVirtualCreate(QWidget* parent, Session& session, FolderLister& lister,
                      MessageFront& messages, const StatusFn& status = {});
bool RunVirtualUpdate(QWidget* parent, Session& session, FolderLister& lister,
                      MessageFront& messages, const StatusFn& status = {});
bool RunVirtualRemove(QWidget* parent, Session& session, MessageFront& messages);
bool RunVirtualRename(QWidget* parent, Session& session, MessageFront& messages);
void RunVirtualExport(QWidget* parent, Session& session, MessageFront& messages);
// `path` is the file JK2Import gave ("" ends the command).
bool RunVirtualImport(Session& session, const std::string& path, MessageFront& messages);
void RunVirtualSummary(QWidget* parent, const Session& session);

void RunBookmarkAdd(QWidget* parent, Session& session, const std::string& currentFolder);
// A double click jumps through `jump` (Mark_Click's road: ExpandToPath of the location).
void RunBookmarkEditor(QWidget* parent, Session& session,
                       const std::function<void(const std::string& location)>& jump);

}  // namespace jk
