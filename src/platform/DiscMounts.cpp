#include "platform/DiscMounts.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <atomic>
#include <thread>
#include <unordered_map>

#include <QtCore/QProcess>
#include <QtCore/QStringList>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusInterface>
#include <QtDBus/QDBusObjectPath>
#include <QtDBus/QDBusReply>
#include <QtDBus/QDBusVariant>

#include "platform/DrivesProbe.h"
#include "platform/FilesystemIdentity.h"
#include "util/PathHelpers.h"
#include "util/Text.h"

namespace jk {

MountedDiscs MountedDiscsFrom(const std::vector<MountEntry>& mounts,
                              const std::function<std::string(const MountEntry&)>& labelOf,
                              const std::function<std::string(const MountEntry&)>& uuidOf) {
    MountedDiscs discs;
    for (const MountEntry& mount : mounts) {
        if (mount.Deleted || !IsBrowsableMount(mount)) {
            continue;
        }
        MountedDisc disc;
        disc.MountRoot = mount.MountPoint;
        disc.Label = labelOf ? labelOf(mount) : std::string();
        disc.Uuid = uuidOf ? uuidOf(mount) : std::string();
        disc.Type = mount.FsType;
        discs.push_back(std::move(disc));
    }
    return discs;
}

MountedDiscs ListMountedDiscs() {
    // The links udev keeps first; where they are missing (no udev, a container, a device they
    // lack), the superblock itself.
    const auto labels = ReadVolumeLabels("/dev/disk/by-label");
    const auto uuids = ReadVolumeLabels("/dev/disk/by-uuid");
    std::unordered_map<std::string, FilesystemIdentity> probed;
    const auto probe = [&probed](const MountEntry& m) -> const FilesystemIdentity& {
        auto found = probed.find(m.Source);
        if (found == probed.end()) {
            found = probed.emplace(m.Source, ProbeFilesystemIdentity(m.Source)).first;
        }
        return found->second;
    };
    return MountedDiscsFrom(
        ReadMountTable(),
        [&](const MountEntry& m) {
            std::string label = LabelOfMount(m, labels);
            return label.empty() ? probe(m).Label : label;
        },
        [&](const MountEntry& m) {
            std::string uuid = LabelOfMount(m, uuids);
            return uuid.empty() ? probe(m).Uuid : uuid;
        });
}

struct MountWatcher::State {
    std::atomic<bool> stop = false;
    std::thread thread;
};

MountWatcher::MountWatcher(std::function<void()> onChange) : m_state(std::make_unique<State>()) {
    State* state = m_state.get();
    state->thread = std::thread([state, onChange = std::move(onChange)] {
        // The kernel marks the mount table with POLLPRI when it changes.
        const int fd = ::open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC);
        if (fd < 0) {
            return;
        }
        while (!state->stop) {
            pollfd p{fd, POLLPRI, 0};
            const int ready = ::poll(&p, 1, 250);
            if (ready > 0 && (p.revents & (POLLPRI | POLLERR)) != 0) {
                char buffer[4096];
                ::lseek(fd, 0, SEEK_SET);
                while (::read(fd, buffer, sizeof buffer) > 0) {
                }
                if (!state->stop) {
                    onChange();
                }
            }
        }
        ::close(fd);
    });
}

MountWatcher::~MountWatcher() {
    m_state->stop = true;
    if (m_state->thread.joinable()) {
        m_state->thread.join();
    }
}

namespace {

bool EjectThroughUdisks(const std::string& source) {
    if (!StartsWith(source, "/dev/")) {
        return false;
    }
    QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.isConnected()) {
        return false;
    }
    const QString service = QStringLiteral("org.freedesktop.UDisks2");
    const QString object = QStringLiteral("/org/freedesktop/UDisks2/block_devices/") +
                           QString::fromStdString(std::string(BareName(source)));
    QDBusInterface filesystem(service, object, QStringLiteral("org.freedesktop.UDisks2.Filesystem"),
                              bus);
    if (!filesystem.isValid()) {
        return false;
    }
    filesystem.call(QStringLiteral("Unmount"), QVariantMap());
    QDBusInterface block(service, object, QStringLiteral("org.freedesktop.DBus.Properties"), bus);
    const QDBusReply<QDBusVariant> drive =
        block.call(QStringLiteral("Get"), QStringLiteral("org.freedesktop.UDisks2.Block"),
                   QStringLiteral("Drive"));
    if (!drive.isValid()) {
        return false;
    }
    const QDBusObjectPath drivePath = qvariant_cast<QDBusObjectPath>(drive.value().variant());
    QDBusInterface driveIface(service, drivePath.path(),
                              QStringLiteral("org.freedesktop.UDisks2.Drive"), bus);
    const QDBusMessage reply = driveIface.call(QStringLiteral("Eject"), QVariantMap());
    return reply.type() != QDBusMessage::ErrorMessage;
}

}  // namespace

void EjectDisc(const std::string& path) {
    const MountEntry* found = nullptr;
    const std::vector<MountEntry> mounts = ReadMountTable();
    for (const MountEntry& mount : mounts) {
        const std::string& root = mount.MountPoint;
        const bool inside = root == "/" || path == root || StartsWith(path, root + "/");
        if (inside && (found == nullptr || root.size() >= found->MountPoint.size())) {
            found = &mount;
        }
    }
    // Only a removable or optical medium is ever ejected.
    if (found == nullptr) {
        return;
    }
    const int type = DriveTypeOf(*found, ProbeMount(*found));
    if (type != kDriveRemovable && type != kDriveOptical) {
        return;
    }
    const std::string source = found->Source;
    if (EjectThroughUdisks(source)) {
        return;
    }
    QProcess::execute(QStringLiteral("eject"), {QString::fromStdString(path)});
}

}  // namespace jk
