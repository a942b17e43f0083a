#include "util/InParts.h"

#include <algorithm>
#include <system_error>
#include <thread>
#include <vector>

namespace jk {

void InParts(std::size_t n, unsigned parts,
             const std::function<void(std::size_t begin, std::size_t end, unsigned part)>& body) {
    parts = std::max(1u, parts);
    const auto sliceBegin = [n, parts](unsigned part) { return n * part / parts; };
    std::vector<std::thread> helpers;
    helpers.reserve(parts - 1);
    unsigned inlineFrom = 1;
    for (unsigned part = 1; part < parts; ++part) {
        try {
            helpers.emplace_back(body, sliceBegin(part), sliceBegin(part + 1), part);
            inlineFrom = part + 1;
        } catch (const std::system_error&) {
            break;  // no thread to be had
        }
    }
    body(0, sliceBegin(1), 0);
    for (unsigned part = inlineFrom; part < parts; ++part) {
        body(sliceBegin(part), sliceBegin(part + 1), part);
    }
    for (std::thread& helper : helpers) {
        helper.join();
    }
}

}  // namespace jk
