#include "platform/SessionMprisBus.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QStringList>
#include <QVariantMap>

namespace jk {

namespace {

const QString kObjectPath = QStringLiteral("/org/mpris/MediaPlayer2");
const QString kRootInterface = QStringLiteral("org.mpris.MediaPlayer2");
const QString kPlayerInterface = QStringLiteral("org.mpris.MediaPlayer2.Player");
const QString kTrackListInterface = QStringLiteral("org.mpris.MediaPlayer2.TrackList");
const QString kProperties = QStringLiteral("org.freedesktop.DBus.Properties");

// QtDBus wants an application object; the command-line tool has none of its own.
void EnsureApplication() {
    if (QCoreApplication::instance() == nullptr) {
        static int argc = 1;
        static char name[] = "jukarra";
        static char* argv[] = {name, nullptr};
        static QCoreApplication application(argc, argv);
    }
}

QVariant Unwrap(const QVariant& value) {
    if (value.canConvert<QDBusVariant>() && value.userType() == qMetaTypeId<QDBusVariant>()) {
        return qvariant_cast<QDBusVariant>(value).variant();
    }
    return value;
}

QVariantMap MapOf(const QVariant& value) {
    const QVariant plain = Unwrap(value);
    if (plain.userType() == qMetaTypeId<QDBusArgument>()) {
        QVariantMap map;
        qvariant_cast<QDBusArgument>(plain) >> map;
        return map;
    }
    return plain.toMap();
}

std::string TextOf(const QVariant& value) {
    const QVariant plain = Unwrap(value);
    if (plain.userType() == qMetaTypeId<QDBusObjectPath>()) {
        return qvariant_cast<QDBusObjectPath>(plain).path().toStdString();
    }
    return plain.toString().toStdString();
}

std::vector<std::string> TextsOf(const QVariant& value) {
    const QVariant plain = Unwrap(value);
    std::vector<std::string> texts;
    if (plain.userType() == qMetaTypeId<QDBusArgument>()) {
        const QDBusArgument argument = qvariant_cast<QDBusArgument>(plain);
        if (argument.currentSignature() == QLatin1String("ao")) {
            QList<QDBusObjectPath> paths;
            argument >> paths;
            for (const QDBusObjectPath& path : paths) {
                texts.push_back(path.path().toStdString());
            }
        } else {
            QStringList list;
            argument >> list;
            for (const QString& text : list) {
                texts.push_back(text.toStdString());
            }
        }
        return texts;
    }
    if (plain.userType() == qMetaTypeId<QList<QDBusObjectPath>>()) {
        for (const QDBusObjectPath& path : qvariant_cast<QList<QDBusObjectPath>>(plain)) {
            texts.push_back(path.path().toStdString());
        }
        return texts;
    }
    for (const QString& text : plain.toStringList()) {
        texts.push_back(text.toStdString());
    }
    return texts;
}

std::int64_t WholeOf(const QVariant& value, std::int64_t otherwise) {
    bool ok = false;
    const qlonglong number = Unwrap(value).toLongLong(&ok);
    return ok ? number : otherwise;
}

MprisMetadata MetadataOf(const QVariant& value) {
    const QVariantMap map = MapOf(value);
    MprisMetadata metadata;
    metadata.trackId = TextOf(map.value(QStringLiteral("mpris:trackid")));
    metadata.url = TextOf(map.value(QStringLiteral("xesam:url")));
    metadata.title = TextOf(map.value(QStringLiteral("xesam:title")));
    metadata.artists = TextsOf(map.value(QStringLiteral("xesam:artist")));
    metadata.lengthUs = WholeOf(map.value(QStringLiteral("mpris:length")), -1);
    return metadata;
}

// What D-Bus takes as an object path: "/" or "/" separated parts of letters, digits and "_".
bool IsObjectPath(const std::string& path) {
    if (path == "/") {
        return true;
    }
    if (path.empty() || path.front() != '/' || path.back() == '/') {
        return false;
    }
    char previous = '\0';
    for (const char c : path) {
        const bool plain =
            (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
        if (!plain && !(c == '/' && previous != '/')) {
            return false;
        }
        previous = c;
    }
    return true;
}

class SessionMprisBus final : public MprisBus {
public:
    explicit SessionMprisBus(int timeoutMs)
        : m_timeoutMs(timeoutMs), m_connection(QDBusConnection::sessionBus()) {}

    std::vector<std::string> ListNames() override {
        std::vector<std::string> names;
        const auto reply =
            Call(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                 QStringLiteral("org.freedesktop.DBus"), QStringLiteral("ListNames"), {});
        if (reply && !reply->arguments().isEmpty()) {
            for (const QString& name : reply->arguments().constFirst().toStringList()) {
                names.push_back(name.toStdString());
            }
        }
        return names;
    }

    bool NameHasOwner(const std::string& busName) override {
        const auto reply =
            Call(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                 QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameHasOwner"),
                 {QString::fromStdString(busName)});
        return reply && !reply->arguments().isEmpty() && reply->arguments().constFirst().toBool();
    }

    bool CallPlayer(const std::string& busName, std::string_view method) override {
        return Call(Service(busName), kObjectPath, kPlayerInterface, Name(method), {}).has_value();
    }

    bool Seek(const std::string& busName, std::int64_t offsetUs) override {
        return Call(Service(busName), kObjectPath, kPlayerInterface, QStringLiteral("Seek"),
                    {QVariant::fromValue(static_cast<qlonglong>(offsetUs))})
            .has_value();
    }

    bool SetPosition(const std::string& busName, const std::string& trackId,
                     std::int64_t positionUs) override {
        if (!IsObjectPath(trackId)) {
            return false;
        }
        return Call(Service(busName), kObjectPath, kPlayerInterface, QStringLiteral("SetPosition"),
                    {QVariant::fromValue(QDBusObjectPath(QString::fromStdString(trackId))),
                     QVariant::fromValue(static_cast<qlonglong>(positionUs))})
            .has_value();
    }

    bool OpenUri(const std::string& busName, const std::string& uri) override {
        return Call(Service(busName), kObjectPath, kPlayerInterface, QStringLiteral("OpenUri"),
                    {QString::fromStdString(uri)})
            .has_value();
    }

    bool SetVolume(const std::string& busName, double volume) override {
        return Call(Service(busName), kObjectPath, kProperties, QStringLiteral("Set"),
                    {kPlayerInterface, QStringLiteral("Volume"),
                     QVariant::fromValue(QDBusVariant(volume))})
            .has_value();
    }

    std::optional<MprisPlayerState> PlayerState(const std::string& busName) override {
        const auto properties = AllProperties(busName, kPlayerInterface);
        if (!properties) {
            return std::nullopt;
        }
        const QVariantMap& map = *properties;
        MprisPlayerState state;
        state.playbackStatus = TextOf(map.value(QStringLiteral("PlaybackStatus")));
        state.positionUs = WholeOf(map.value(QStringLiteral("Position")), -1);
        bool ok = false;
        const double volume = Unwrap(map.value(QStringLiteral("Volume"))).toDouble(&ok);
        state.volume = ok ? volume : -1;
        state.canGoNext = Unwrap(map.value(QStringLiteral("CanGoNext"))).toBool();
        state.canGoPrevious = Unwrap(map.value(QStringLiteral("CanGoPrevious"))).toBool();
        state.canPlay = Unwrap(map.value(QStringLiteral("CanPlay"))).toBool();
        state.canPause = Unwrap(map.value(QStringLiteral("CanPause"))).toBool();
        state.canSeek = Unwrap(map.value(QStringLiteral("CanSeek"))).toBool();
        state.canControl = Unwrap(map.value(QStringLiteral("CanControl"))).toBool();
        state.metadata = MetadataOf(map.value(QStringLiteral("Metadata")));
        return state;
    }

    bool CallRoot(const std::string& busName, std::string_view method) override {
        return Call(Service(busName), kObjectPath, kRootInterface, Name(method), {}).has_value();
    }

    std::optional<MprisRootState> RootState(const std::string& busName) override {
        const auto properties = AllProperties(busName, kRootInterface);
        if (!properties) {
            return std::nullopt;
        }
        MprisRootState state;
        state.canQuit = Unwrap(properties->value(QStringLiteral("CanQuit"))).toBool();
        state.canRaise = Unwrap(properties->value(QStringLiteral("CanRaise"))).toBool();
        state.hasTrackList = Unwrap(properties->value(QStringLiteral("HasTrackList"))).toBool();
        return state;
    }

    std::optional<std::vector<std::string>> Tracks(const std::string& busName) override {
        const auto reply = Call(Service(busName), kObjectPath, kProperties, QStringLiteral("Get"),
                                {kTrackListInterface, QStringLiteral("Tracks")});
        if (!reply || reply->arguments().isEmpty()) {
            return std::nullopt;
        }
        return TextsOf(reply->arguments().constFirst());
    }

    bool AddTrack(const std::string& busName, const std::string& uri, const std::string& afterTrack,
                  bool setAsCurrent) override {
        if (!IsObjectPath(afterTrack)) {
            return false;
        }
        return Call(Service(busName), kObjectPath, kTrackListInterface, QStringLiteral("AddTrack"),
                    {QString::fromStdString(uri),
                     QVariant::fromValue(QDBusObjectPath(QString::fromStdString(afterTrack))),
                     setAsCurrent})
            .has_value();
    }

    bool RemoveTrack(const std::string& busName, const std::string& trackId) override {
        if (!IsObjectPath(trackId)) {
            return false;
        }
        return Call(Service(busName), kObjectPath, kTrackListInterface,
                    QStringLiteral("RemoveTrack"),
                    {QVariant::fromValue(QDBusObjectPath(QString::fromStdString(trackId)))})
            .has_value();
    }

private:
    static QString Service(const std::string& busName) { return QString::fromStdString(busName); }
    static QString Name(std::string_view method) {
        return QString::fromUtf8(method.data(), static_cast<qsizetype>(method.size()));
    }

    // The reply of a method call; nullopt on an error or a time-out.
    std::optional<QDBusMessage> Call(const QString& service, const QString& path,
                                     const QString& interface, const QString& method,
                                     const QVariantList& arguments) {
        if (!m_connection.isConnected() || service.isEmpty()) {
            return std::nullopt;
        }
        QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
        message.setArguments(arguments);
        const QDBusMessage reply = m_connection.call(message, QDBus::Block, m_timeoutMs);
        if (reply.type() != QDBusMessage::ReplyMessage) {
            return std::nullopt;
        }
        return reply;
    }

    std::optional<QVariantMap> AllProperties(const std::string& busName, const QString& interface) {
        const auto reply =
            Call(Service(busName), kObjectPath, kProperties, QStringLiteral("GetAll"), {interface});
        if (!reply || reply->arguments().isEmpty()) {
            return std::nullopt;
        }
        return MapOf(reply->arguments().constFirst());
    }

    int m_timeoutMs;
    QDBusConnection m_connection;
};

}  // namespace

std::unique_ptr<MprisBus> OpenSessionMprisBus(int timeoutMs) {
    EnsureApplication();
    return std::make_unique<SessionMprisBus>(timeoutMs);
}

}  // namespace jk
