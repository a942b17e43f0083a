#pragma once

// Virtual_Summary: the totals of every catalogued volume as its four labels show them.

#include <cstdint>
#include <string>

#include "catalogue/VirtualVolumes.h"

namespace jk {

struct VirtualSummary {
    std::int64_t Drives = 0;
    std::int64_t Songs = 0;
    double Bytes = 0;
    std::int64_t Seconds = 0;
    std::string SizeText;  // "0.00" + " MB" up to 1024 MB, else in GB
    std::string TimeText;  // hours, minutes and seconds
};

// Minutes of a Time are its two leading characters, or with `exactTimes` every digit before
// the last two.
VirtualSummary SummarizeVolumes(const VolumeTable& table, bool exactTimes);
std::string SummarySizeText(double bytes);

}  // namespace jk
