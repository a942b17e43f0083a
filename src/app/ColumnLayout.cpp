#include "app/ColumnLayout.h"

#include <array>
#include <charconv>

#include "app/WindowPlacement.h"
#include "listing/ListRow.h"

namespace jk {

namespace {

// The tokens of a ColumnOrder text as numbers, in order; -1 for a token that holds none.
std::vector<int> Tokens(std::string_view text) {
    std::vector<int> tokens;
    std::size_t at = 0;
    while (at < text.size()) {
        while (at < text.size() && text[at] == ' ') {
            ++at;
        }
        const std::size_t end = std::min(text.find(' ', at), text.size());
        if (end == at) {
            break;
        }
        const std::string_view token = text.substr(at, end - at);
        int value = -1;
        const auto [next, error] =
            std::from_chars(token.data(), token.data() + token.size(), value);
        if (error != std::errc() || next == token.data()) {
            value = -1;
        }
        tokens.push_back(value);
        at = end;
    }
    return tokens;
}

bool NamesColumn(int token, int count) {
    return token >= 0 && token < count;
}

}  // namespace

std::vector<int> ParseColumnOrder(std::string_view text, int count) {
    std::vector<int> order;
    std::vector<bool> seen(static_cast<std::size_t>(std::max(count, 0)), false);
    for (const int token : Tokens(text)) {
        if (NamesColumn(token, count) && !seen[static_cast<std::size_t>(token)]) {
            seen[static_cast<std::size_t>(token)] = true;
            order.push_back(token);
        }
    }
    for (int column = 0; column < count; ++column) {
        if (!seen[static_cast<std::size_t>(column)]) {
            order.push_back(column);
        }
    }
    return order;
}

std::string FormatColumnOrder(std::span<const int> order, std::string_view previous, int count) {
    const std::vector<int> old = Tokens(previous);
    // The foreign tokens by their place in the old text.
    std::vector<std::pair<std::size_t, int>> foreign;
    for (std::size_t i = 0; i < old.size(); ++i) {
        if (old[i] >= count) {
            foreign.emplace_back(i, old[i]);
        }
    }
    std::string text;
    std::size_t place = 0;
    std::size_t nextForeign = 0;
    const auto put = [&text, &place](int token) {
        text += ' ';
        text += std::to_string(token);
        text += 'x';
        ++place;
    };
    for (const int column : order) {
        while (nextForeign < foreign.size() && foreign[nextForeign].first == place) {
            put(foreign[nextForeign++].second);
        }
        put(column);
    }
    for (; nextForeign < foreign.size(); ++nextForeign) {
        put(foreign[nextForeign].second);
    }
    return text;
}

ColumnWidth ColumnWidthOf(const ColumnWidths& widths, int column) {
    const auto key = static_cast<std::size_t>(column) + 1;
    if (column < 0 || key >= widths.size()) {
        return {};
    }
    const double twips = widths[key];
    if (twips <= 0) {
        return {};
    }
    if (twips <= 1) {
        return {0, true};
    }
    return {TwipsToPixels(twips), false};
}

void StoreColumnWidth(ColumnWidths& widths, int column, const ColumnWidth& width) {
    const auto key = static_cast<std::size_t>(column) + 1;
    if (column < 0 || key >= widths.size()) {
        return;
    }
    widths[key] = width.hidden || width.pixels <= 1 ? 1.0 : PixelsToTwips(width.pixels);
}

int DefaultColumnChars(int column) {
    static constexpr std::array<int, kColumnCount> kChars = {34, 24, 24, 6,  12, 7,
                                                             8,  48, 24, 11, 20, 12};
    if (column < 0 || static_cast<std::size_t>(column) >= kChars.size()) {
        return 12;
    }
    return kChars[static_cast<std::size_t>(column)];
}

}  // namespace jk
