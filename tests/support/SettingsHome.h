#pragma once

#include "settings/AppSettings.h"
#include "settings/SystemColorScheme.h"

#include <QByteArray>
#include <QDir>
#include <QString>
#include <QTemporaryDir>

#include <memory>

/// A settings file of one test's own: a temporary home whose config folder
/// $XDG_CONFIG_HOME points to while the object lives, and a store on a file there that
/// no desktop answers for (the System appearance has no portal to ask).
class SettingsHome {
public:
    SettingsHome() : savedConfigHome_(qgetenv("XDG_CONFIG_HOME")) {
        QDir().mkpath(configDir());
        qputenv("XDG_CONFIG_HOME", configDir().toLocal8Bit());
    }
    ~SettingsHome() {
        if (savedConfigHome_.isNull())
            qunsetenv("XDG_CONFIG_HOME");
        else
            qputenv("XDG_CONFIG_HOME", savedConfigHome_);
    }
    SettingsHome(const SettingsHome&) = delete;
    SettingsHome& operator=(const SettingsHome&) = delete;

    QString path(const QString& name) const { return dir_.filePath(name); }
    QString configDir() const { return path(QStringLiteral("config")); }
    QString settingsFile() const { return path(QStringLiteral("vorlune.conf")); }

    /// A store on the settings file; another call gives a second store on the same file.
    std::unique_ptr<AppSettings> open() const {
        return std::make_unique<AppSettings>(settingsFile(),
                                             std::make_unique<SystemColorScheme>(QString()));
    }

private:
    QTemporaryDir dir_;
    QByteArray savedConfigHome_;
};
