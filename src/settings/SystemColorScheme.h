#pragma once

#include <QObject>
#include <QString>
#include <optional>

class PortalSettingsListener;

/// The desktop's own light or dark preference, read once at construction and
/// kept current while the desktop reports changes.
class SystemColorScheme : public QObject {
    Q_OBJECT
public:
    /// Asks the desktop of the current session.
    explicit SystemColorScheme(QObject* parent = nullptr);
    /// Asks over the message bus at `busAddress` (tests run a private bus).
    explicit SystemColorScheme(const QString& busAddress, QObject* parent = nullptr);

    /// true for dark, false for light, nullopt while the desktop has not answered.
    std::optional<bool> prefersDark() const { return prefersDark_; }

signals:
    /// The desktop reported a new preference.
    void changed();

private:
    void follow(PortalSettingsListener* listener);

    std::optional<bool> prefersDark_;
};
