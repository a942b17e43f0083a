#include "app/cli/CommandOutput.h"

#include <cstdio>

#include "app/JsonLine.h"
#include "app/cli/CliRegistry.h"
#include "metadata/SongInfo.h"
#include "playback/ListWriting.h"

namespace jk {

namespace {

// Tabs and line ends inside a text would break the columns.
void AppendCell(std::string& line, std::string_view text) {
    for (const char c : text) {
        line.push_back(c == '\t' || c == '\n' || c == '\r' ? ' ' : c);
    }
}

}  // namespace

void PrintOut(std::string_view line) {
    std::fwrite(line.data(), 1, line.size(), stdout);
    std::fputc('\n', stdout);
}

std::string TabbedLine(std::initializer_list<std::string_view> cells) {
    std::string line;
    bool first = true;
    for (const std::string_view cell : cells) {
        if (!first) {
            line.push_back('\t');
        }
        line.append(cell);
        first = false;
    }
    return line;
}

int FinishOutput(int status) {
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        PrintError("cannot write the output");
        return kExitFailed;
    }
    return status;
}

void PrintRowHeader(bool json) {
    if (json) {
        return;
    }
    std::string line;
    for (const std::string_view caption : ColumnCaptions()) {
        if (!line.empty()) {
            line.push_back('\t');
        }
        line.append(caption);
    }
    PrintOut(line);
}

void PrintRow(const ListRow& row, bool json) {
    const auto& captions = ColumnCaptions();
    if (json) {
        JsonLine line;
        for (std::size_t column = 0; column < kColumnCount; ++column) {
            line.AddText(captions[column], row.Get(column));
        }
        PrintOut(line.Text());
        return;
    }
    std::string line;
    for (std::size_t column = 0; column < kColumnCount; ++column) {
        if (column > 0) {
            line.push_back('\t');
        }
        AppendCell(line, row.Get(column));
    }
    PrintOut(line);
}

void PrintError(std::string_view message) {
    std::fprintf(stderr, "jukarra-cli: %.*s\n", static_cast<int>(message.size()), message.data());
}

void ReportUnreadable(std::string_view path) {
    PrintError(std::string(path) + ": " + std::string(kFileNonExistant));
}

std::string SaveFailedLine(std::string_view reason) {
    const UserMessage message = SaveFailedMessage();
    std::string line = message.title + " " + message.text;
    if (!reason.empty()) {
        line += " (" + std::string(reason) + ")";
    }
    return line;
}

std::string ListErrorLine(std::string_view path, std::string_view error) {
    if (error.find(path) != std::string_view::npos) {
        return std::string(error);
    }
    return std::string(path) + ": " + std::string(error);
}

}  // namespace jk
