#pragma once

#include <QObject>
#include <QString>

#include <map>

/// Notifications through the desktop's notification server (org.freedesktop.Notifications
/// on the session bus). With no server the first failure is logged and later ones are
/// quiet: the app goes on either way.
class DesktopNotifications : public QObject {
    Q_OBJECT
public:
    explicit DesktopNotifications(QObject* parent = nullptr);

    /// Shows one notification; a click on it reports `tag` through activated().
    void show(const QString& summary, const QString& body, bool urgent, int tag);

signals:
    void activated(int tag);

private slots:
    void onActionInvoked(uint id, const QString& action);

private:
    std::map<uint, int> tags; ///< notification id → tag, until clicked
    bool failureLogged = false;
};
