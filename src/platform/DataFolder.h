#pragma once

// Where the program keeps its data files (settings, cache, virtual drives, bookmarks, lists):
// the folder named by the command line or $JUKARRA_HOME; else the program's own folder when it
// holds jukarra2.ini (a portable install); else $XDG_DATA_HOME/jukarra/ (normally
// ~/.local/share/jukarra/). The folder is created on first use; its case is never changed.

#include <string>
#include <string_view>

namespace jk {

struct DataFolderInputs {
    std::string explicitFolder;    // given on the command line; wins when set
    std::string jukarraHome;       // $JUKARRA_HOME
    std::string executableFolder;  // the folder of the running program
    bool executableFolderHoldsIni = false;
    std::string xdgDataHome;  // $XDG_DATA_HOME; ignored unless absolute
    std::string home;         // the user's home folder
};

// The folder the inputs name, before it is made absolute or created.
std::string ChooseDataFolder(const DataFolderInputs& inputs);
// The inputs of this process: its environment and its executable's folder.
DataFolderInputs CurrentDataFolderInputs(std::string_view explicitFolder);

struct DataFolderResult {
    bool ok = false;
    std::string path;   // absolute, ending in "/"
    std::string error;  // one line, for the user
};

// Makes `folder` absolute, creates it (and its parents) when missing, and checks that files can
// be written in it.
DataFolderResult PrepareDataFolder(const std::string& folder);
// Chooses the data folder of this process and prepares it.
DataFolderResult OpenDataFolder(std::string_view explicitFolder = {});

}  // namespace jk
