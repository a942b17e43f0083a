#pragma once

// What commands write: lines on standard output, list rows as text columns or JSON lines, and
// errors as one line each on standard error.

#include <initializer_list>
#include <string>
#include <string_view>

#include "listing/ListRow.h"

namespace jk {

// One line on standard output.
void PrintOut(std::string_view line);
// The cells joined by tabs, as one line of a command's tabular output.
std::string TabbedLine(std::initializer_list<std::string_view> cells);
// The exit status after the output is flushed: kExitFailed when standard output failed.
int FinishOutput(int status);

// Rows as tab-separated columns under a header line of the column captions, or, with `json`,
// as one object a line named by the captions ("Title" ... "Volume").
void PrintRowHeader(bool json);
void PrintRow(const ListRow& row, bool json);

// "jukarra-cli: message" on standard error.
void PrintError(std::string_view message);
// "jukarra-cli: PATH: File non-existant" on standard error.
void ReportUnreadable(std::string_view path);

// "Uh-oh... Current playlist could not be saved successfully. (reason)", for one error line.
std::string SaveFailedLine(std::string_view reason);
// The error of reading the list at `path` as one line that names the list.
std::string ListErrorLine(std::string_view path, std::string_view error);

}  // namespace jk
