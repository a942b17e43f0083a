#include "catalogue/VirtualSummary.h"

#include <cstdio>

#include "catalogue/SongFields.h"
#include "util/Text.h"
#include "util/TimeHelpers.h"

namespace jk {

std::string SummarySizeText(double bytes) {
    double megabytes = bytes / 1024 / 1024;
    const char* unit = " MB";
    if (megabytes > 1024) {
        megabytes /= 1024;
        unit = " GB";
    }
    char text[64];
    std::snprintf(text, sizeof text, "%.2f%s", megabytes, unit);
    return text;
}

VirtualSummary SummarizeVolumes(const VolumeTable& table, bool exactTimes) {
    VirtualSummary summary;
    for (const VirtualVolume& volume : table) {
        ++summary.Drives;
        for (std::size_t i = 0; i < volume.Count(); ++i) {
            ++summary.Songs;
            summary.Seconds += ParseTime(volume.Field(i, kKeyTime), exactTimes);
            summary.Bytes += Val(volume.Field(i, kKeySize));
        }
    }
    summary.SizeText = SummarySizeText(summary.Bytes);
    summary.TimeText = FormatHMS(summary.Seconds);
    return summary;
}

}  // namespace jk
