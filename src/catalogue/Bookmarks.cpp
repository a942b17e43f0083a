#include "catalogue/Bookmarks.h"

#include <algorithm>

#include "catalogue/VBaseFormat.h"
#include "util/PathHelpers.h"
#include "util/Text.h"
#include "util/Utf8.h"

namespace jk {
namespace {

constexpr std::int64_t kMaxBookmarkBytes = std::int64_t{16} << 20;
constexpr std::array<std::string_view, kBookmarkMenuEntries> kPrefixes = {
    "&1 ", "&2 ", "&3 ", "&4 ", "&5 ", "&6 ", "&7 ", "&8 ", "&9 ", "&0 "};

template <class Item>
void SlideSelected(std::vector<Item>& items, std::vector<bool>& selected, Slide slide) {
    const std::size_t n = std::min(items.size(), selected.size());
    switch (slide) {
        case Slide::Up:
            for (std::size_t i = 1; i < n; ++i) {
                if (selected[i] && !selected[i - 1]) {
                    std::swap(items[i], items[i - 1]);
                    selected[i - 1] = true;
                    selected[i] = false;
                }
            }
            break;
        case Slide::Down:
            for (std::size_t i = n; i-- > 1;) {
                if (selected[i - 1] && !selected[i]) {
                    std::swap(items[i], items[i - 1]);
                    selected[i] = true;
                    selected[i - 1] = false;
                }
            }
            break;
        case Slide::Top:
        case Slide::Bottom: {
            std::vector<Item> chosen;
            std::vector<Item> rest;
            for (std::size_t i = 0; i < n; ++i) {
                (selected[i] ? chosen : rest).push_back(std::move(items[i]));
            }
            const bool top = slide == Slide::Top;
            items.clear();
            for (auto* part : top ? std::array{&chosen, &rest} : std::array{&rest, &chosen}) {
                for (Item& item : *part) {
                    items.push_back(std::move(item));
                }
            }
            std::fill(selected.begin(), selected.end(), false);
            const std::size_t from = top ? 0 : rest.size();
            for (std::size_t i = 0; i < chosen.size(); ++i) {
                selected[from + i] = true;
            }
            break;
        }
    }
}

}  // namespace

BookmarkList ParseBookmarks(std::string_view bytes) {
    std::vector<std::string> lines;
    std::string scratch;
    while (!bytes.empty()) {
        const std::size_t end = bytes.find('\n');
        std::string_view line = bytes.substr(0, end);
        bytes = end == std::string_view::npos ? std::string_view() : bytes.substr(end + 1);
        if (!line.empty() && line.back() == '\r') {
            line.remove_suffix(1);
        }
        lines.emplace_back(Trim(DataFileText(line, scratch)));
    }
    BookmarkList bookmarks;
    for (std::size_t i = 0; i + 1 < lines.size(); i += 2) {
        bookmarks.push_back({std::move(lines[i]), std::move(lines[i + 1])});
    }
    return bookmarks;
}

BookmarkList LoadBookmarks(const std::string& path) {
    std::string bytes;
    if (!FileExists(path) || !ReadWholeFile(path, bytes, kMaxBookmarkBytes).ok) {
        return {};
    }
    return ParseBookmarks(bytes);
}

std::string BookmarksBytes(const BookmarkList& bookmarks) {
    std::string out;
    for (const Bookmark& b : bookmarks) {
        out.append(b.Name).append("\r\n").append(b.Location).append("\r\n");
    }
    return out;
}

IoResult SaveBookmarks(const std::string& path, const BookmarkList& bookmarks) {
    return WriteFileAtomically(path, BookmarksBytes(bookmarks));
}

std::vector<std::string> BookmarkMenuCaptions(const BookmarkList& bookmarks, bool& more) {
    std::vector<std::string> captions;
    for (std::size_t i = 0; i < bookmarks.size() && i < kBookmarkMenuEntries; ++i) {
        captions.push_back(std::string(kPrefixes[i]) + bookmarks[i].Name);
    }
    more = bookmarks.size() > kBookmarkMenuEntries;
    return captions;
}

void SlideBookmarks(BookmarkList& bookmarks, std::vector<bool>& selected, Slide slide) {
    SlideSelected(bookmarks, selected, slide);
}

void SortBookmarks(BookmarkList& bookmarks, int column) {
    std::stable_sort(bookmarks.begin(), bookmarks.end(),
                     [column](const Bookmark& a, const Bookmark& b) {
                         return column == 0 ? CompareNoCase(a.Name, b.Name) < 0
                                            : CompareNoCase(a.Location, b.Location) < 0;
                     });
}

std::string BookmarkDestination(std::string_view location) {
    std::string path(location);
    if (!IsRealPath(path)) {
        return path;
    }
    while (path.size() > 1 && !FolderExists(path)) {
        const std::size_t parentLength = ParentPath(path).size();
        path.resize(parentLength == 0 ? 1 : parentLength);
    }
    return path;
}

}  // namespace jk
