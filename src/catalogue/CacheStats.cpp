#include "catalogue/CacheStats.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace jk {

std::string FormatFixed(double value, int decimals, int minIntegerDigits) {
    if (!std::isfinite(value)) {
        return "0";
    }
    decimals = std::max(decimals, 0);  // negative counts ask for none
    minIntegerDigits = std::max(minIntegerDigits, 0);
    // The 15 significant digits the language works with, then rounding on those digits, so that
    // 2.675 rounds up as written rather than as the nearest binary fraction (2.67499...) would.
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%.14e", std::fabs(value));
    std::string digits;
    for (const char* p = buffer; *p != '\0' && *p != 'e'; ++p) {
        if (*p != '.') {
            digits.push_back(*p);
        }
    }
    const int exponent = std::atoi(std::strchr(buffer, 'e') + 1);
    // digits[k] has the weight 10^(exponent - k); keep those of weight 10^-decimals and above.
    const int keep = exponent + 1 + decimals;
    std::string kept;
    if (keep > 0) {
        kept = digits.substr(0, static_cast<std::size_t>(std::min<int>(keep, 15)));
        kept.append(static_cast<std::size_t>(std::max(0, keep - 15)), '0');
    }
    const bool roundUp = keep >= 0 && keep < 15 && digits[static_cast<std::size_t>(keep)] >= '5';
    if (roundUp) {
        int i = static_cast<int>(kept.size()) - 1;
        for (; i >= 0 && kept[static_cast<std::size_t>(i)] == '9'; --i) {
            kept[static_cast<std::size_t>(i)] = '0';
        }
        if (i >= 0) {
            ++kept[static_cast<std::size_t>(i)];
        } else {
            kept.insert(kept.begin(), '1');
        }
    }
    // Now `kept` is the value times 10^decimals, as an integer's digits.
    const std::size_t width =
        static_cast<std::size_t>(decimals) + static_cast<std::size_t>(minIntegerDigits);
    if (kept.size() < width) {
        kept.insert(0, width - kept.size(), '0');
    }
    std::string integer = kept.substr(0, kept.size() - static_cast<std::size_t>(decimals));
    while (integer.size() > static_cast<std::size_t>(minIntegerDigits) && integer.front() == '0') {
        integer.erase(0, 1);
    }
    std::string text = integer;
    if (decimals > 0) {
        text += '.';
        text += kept.substr(kept.size() - static_cast<std::size_t>(decimals));
    }
    const bool zero = text.find_first_not_of("0.") == std::string::npos;
    return value < 0 && !zero ? "-" + text : text;
}

std::string SuccessRateText(std::int32_t totalCacheHits, std::int32_t cacheHits) {
    if (totalCacheHits == 0) {
        return "0.00%";
    }
    const double rate = static_cast<double>(cacheHits) / static_cast<double>(totalCacheHits);
    return FormatFixed(rate * 100, 2, 1) + "%";
}

std::string CacheSizeText(std::int64_t count, std::int32_t limit) {
    if (limit <= 0) {
        return "None";
    }
    if (limit < 2501) {
        const double percent = static_cast<double>(count) / limit * 100;
        return std::to_string(count) + " / " + std::to_string(limit) + " (" +
               FormatFixed(percent, 1, 2) + "%)";
    }
    return std::to_string(count) + " / Infinity";
}

CacheStatsTexts MakeCacheStatsTexts(std::int32_t totalCacheHits, std::int32_t cacheHits,
                                    std::int64_t cacheCount, std::int32_t cacheLimit) {
    CacheStatsTexts texts;
    texts.hitAttempts = std::to_string(totalCacheHits);
    texts.hits = std::to_string(cacheHits);
    texts.misses = std::to_string(static_cast<std::int64_t>(totalCacheHits) - cacheHits);
    texts.successRate = SuccessRateText(totalCacheHits, cacheHits);
    texts.cacheSize = CacheSizeText(cacheCount, cacheLimit);
    return texts;
}

}  // namespace jk
