#pragma once

#include "settings/AppSettings.h"

#include <QAbstractButton>
#include <QApplication>
#include <QByteArray>
#include <QDir>
#include <QSettings>
#include <QTemporaryDir>
#include <QWidget>
#include <gtest/gtest.h>

#include <memory>

// A temporary home for each test: $XDG_CONFIG_HOME points into it and the settings
// live in a file there. The System appearance has no desktop to ask.
class SettingsWindowTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(home.isValid());
        savedConfigHome = qgetenv("XDG_CONFIG_HOME");
        ASSERT_TRUE(QDir().mkpath(configDir()));
        qputenv("XDG_CONFIG_HOME", configDir().toLocal8Bit());
        settings = std::make_unique<AppSettings>(home.filePath(QStringLiteral("vorlune.conf")),
                                                 std::make_unique<SystemColorScheme>(QString()));
        settings->setAppearanceMode(AppearanceMode::light);
        QGuiApplication::setPalette(QPalette());
    }

    void TearDown() override {
        QGuiApplication::setPalette(QPalette());
        qputenv("XDG_CONFIG_HOME", savedConfigHome);
    }

    QString configDir() const { return home.filePath(QStringLiteral("config")); }

    /// The text stored under `key`, read by a store of its own straight from the file;
    /// nullopt when the key is missing or holds something other than text.
    std::optional<QString> stored(const char* key) const {
        QSettings file(settings->fileName(), QSettings::NativeFormat);
        const QVariant value = file.value(QString::fromLatin1(key));
        if (value.metaType().id() != QMetaType::QString)
            return std::nullopt;
        return value.toString();
    }

    QTemporaryDir home;
    QByteArray savedConfigHome;
    std::unique_ptr<AppSettings> settings;
};

/// The child of `root` named `name`; fails the test when there is none.
template <typename Widget> Widget* child(const QObject& root, const QString& name) {
    auto* found = root.findChild<Widget*>(name);
    EXPECT_NE(found, nullptr) << "no child named " << name.toStdString();
    return found;
}
