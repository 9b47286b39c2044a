#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <optional>

// Reads org.freedesktop.appearance color-scheme from the desktop portal and
// forwards its SettingChanged signal for that key.
class PortalSettingsListener : public QObject {
    Q_OBJECT
public:
    PortalSettingsListener(QDBusConnection bus, QString ownedConnectionName, QObject* parent);
    ~PortalSettingsListener() override;

    /// 0 no preference, 1 dark, 2 light; nullopt when no portal answers.
    std::optional<unsigned> readColorScheme();

signals:
    void colorSchemeChanged(unsigned scheme);

private slots:
    void onSettingChanged(const QDBusMessage& message);

private:
    QDBusConnection bus_;
    QString ownedConnectionName_;
};
