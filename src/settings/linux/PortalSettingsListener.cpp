#include "PortalSettingsListener.h"

#include <QDBusVariant>

namespace {

const QString portalService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearanceGroup = QStringLiteral("org.freedesktop.appearance");
const QString colorSchemeKey = QStringLiteral("color-scheme");

// Long enough for a running portal, short enough that a stuck one does not
// hold up start-up noticeably.
constexpr int readTimeoutMs = 1000;

// Read wraps the value in a second variant; SettingChanged does not.
std::optional<unsigned> unwrapScheme(QVariant value) {
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = qvariant_cast<QDBusVariant>(value).variant();
    const int type = value.metaType().id();
    if (type != QMetaType::UInt && type != QMetaType::Int)
        return std::nullopt;
    return value.toUInt();
}

} // namespace

PortalSettingsListener::PortalSettingsListener(QDBusConnection bus, QString ownedConnectionName,
                                               QObject* parent)
    : QObject(parent), bus_(std::move(bus)), ownedConnectionName_(std::move(ownedConnectionName)) {
    if (bus_.isConnected())
        bus_.connect(portalService, portalPath, settingsInterface, QStringLiteral("SettingChanged"),
                     this, SLOT(onSettingChanged(QDBusMessage)));
}

PortalSettingsListener::~PortalSettingsListener() {
    if (!ownedConnectionName_.isEmpty())
        QDBusConnection::disconnectFromBus(ownedConnectionName_);
}

std::optional<unsigned> PortalSettingsListener::readColorScheme() {
    if (!bus_.isConnected())
        return std::nullopt;
    QDBusMessage call =
        QDBusMessage::createMethodCall(portalService, portalPath, settingsInterface, "Read");
    call << appearanceGroup << colorSchemeKey;
    const QDBusMessage reply = bus_.call(call, QDBus::Block, readTimeoutMs);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return std::nullopt;
    return unwrapScheme(reply.arguments().constFirst());
}

void PortalSettingsListener::onSettingChanged(const QDBusMessage& message) {
    const QList<QVariant> arguments = message.arguments();
    if (arguments.size() != 3 || arguments[0].toString() != appearanceGroup ||
        arguments[1].toString() != colorSchemeKey)
        return;
    if (const auto scheme = unwrapScheme(arguments[2]))
        emit colorSchemeChanged(*scheme);
}
