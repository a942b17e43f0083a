#include "platform/FilesystemIdentity.h"

#include <blkid/blkid.h>

#include <cstdlib>

namespace jk {
namespace {

std::string LookUp(blkid_probe probe, const char* name) {
    const char* value = nullptr;
    std::size_t length = 0;
    if (blkid_probe_lookup_value(probe, name, &value, &length) != 0 || value == nullptr) {
        return {};
    }
    // The length counts the closing NUL.
    return std::string(value, length > 0 ? length - 1 : 0);
}

// The blkid cache, which a user without access to the device may still read.
std::string FromCache(const std::string& device, const char* tag) {
    char* value = blkid_get_tag_value(nullptr, tag, device.c_str());
    if (value == nullptr) {
        return {};
    }
    std::string text(value);
    std::free(value);
    return text;
}

}  // namespace

FilesystemIdentity ProbeFilesystemIdentity(const std::string& device) {
    FilesystemIdentity identity;
    if (device.rfind("/dev/", 0) != 0) {
        return identity;
    }
    blkid_probe probe = blkid_new_probe_from_filename(device.c_str());
    if (probe == nullptr) {
        identity.Label = FromCache(device, "LABEL");
        identity.Uuid = FromCache(device, "UUID");
        return identity;
    }
    blkid_probe_enable_superblocks(probe, 1);
    blkid_probe_set_superblocks_flags(probe,
                                      BLKID_SUBLKS_LABEL | BLKID_SUBLKS_UUID | BLKID_SUBLKS_TYPE);
    if (blkid_do_safeprobe(probe) == 0) {
        identity.Label = LookUp(probe, "LABEL");
        identity.Uuid = LookUp(probe, "UUID");
    }
    blkid_free_probe(probe);
    return identity;
}

}  // namespace jk
