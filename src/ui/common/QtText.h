#pragma once

// The core's texts (UTF-8 in standard strings) as the windows show them.

#include <QString>

#include <string_view>

namespace jk {

inline QString ToQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace jk
