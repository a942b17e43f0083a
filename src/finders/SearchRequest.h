#pragma once

// What one search asks (the text test and the size and date test), how it ended, and what it
// tells its window while it runs.

#include <cstdint>
#include <string_view>

#include "finders/SearchFields.h"
#include "finders/SizeDateMatch.h"
#include "finders/TextTest.h"

namespace jk {

inline constexpr std::string_view kSearchReadyStatus = "Ready...";
inline constexpr std::string_view kSearchAbortedStatus = "Aborted...";
inline constexpr std::string_view kSearchingMyComputer = "Searching My Computer...";
inline constexpr std::string_view kSearchingDirectories = "Searching directories...";
inline constexpr std::string_view kSearchingDirectory = "Searching directory...";
inline constexpr std::string_view kSearchingPrefix = "Searching ";
inline constexpr std::string_view kScanningAllVirtual = "Scanning all Virtual Drives...";

// The three fixed rows of "Look in:", and the same lower-cased as the dispatch compares them.
inline constexpr std::string_view kLookInAllDrives = "All drives (real and virtual)";
inline constexpr std::string_view kLookInRealDrives = "Real drives (hard, cd, network)";
inline constexpr std::string_view kLookInVirtualDrives = "Virtual drives (disc images)";

// PBar's steps.
inline constexpr int kSearchBarSteps = 30;

struct SearchRequest {
    TextQuery Query;        // Combo1 as it stands, binary when Check2 is checked
    SearchFieldSet Fields;  // the checked entries of SearchIn
    SizeDateTest SizeDate;
    bool Subfolders = false;  // Check3, for real folders only
};

enum class SearchEnd : std::uint8_t {
    Done,
    Aborted,
    // A date the test needed was no date: the search ends with ErrorBox, no CleanUp.
    Failed,
};

// What a search tells its window. Every call comes on the thread the search runs on.
class SearchFront {
public:
    virtual ~SearchFront() = default;
    // Main's status panel 5.
    virtual void SetPanelStatus(std::string_view /*text*/) {}
    // lblStatus.
    virtual void SetStatus(std::string_view /*text*/) {}
    // PBar (value of maximum); also the moment the window may run its event loop.
    virtual void SetProgress(int /*value*/, int /*maximum*/) {}
    // The abort flag on Main.
    virtual bool AbortRequested() { return false; }
};

}  // namespace jk
