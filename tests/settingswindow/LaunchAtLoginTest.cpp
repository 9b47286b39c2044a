#include "SettingsWindowTestSupport.h"

#include "views/settings/AutostartEntry.h"
#include "views/settings/GeneralSettingsView.h"
#include "views/settings/LaunchAtLogin.h"
#include "views/settings/ToggleSwitch.h"

#include <QFile>
#include <QFileInfo>

#include <string>

namespace {

void writeFile(const QString& path, const QByteArray& contents) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate)) << path.toStdString();
    file.write(contents);
}

QByteArray readFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

TEST(AutostartEntry, LaunchesAtLoginUnlessHiddenOrSwitchedOff) {
    struct Case {
        const char* text;
        bool launches;
    };
    const Case cases[] = {
        {"", true},
        {"[Desktop Entry]\nExec=vorlune\n", true},
        {"[Desktop Entry]\nHidden=true\n", false},
        {"[Desktop Entry]\r\nHidden = true\r\n", false},
        {"[Desktop Entry]\nHidden=false\n", true},
        {"[Desktop Entry]\nHidden=True\n", true},
        {"[Desktop Entry]\nX-GNOME-Autostart-enabled=false\n", false},
        {"[Desktop Entry]\nX-GNOME-Autostart-enabled=true\n", true},
        {"[Desktop Entry]\n#Hidden=true\n", true},
        {"[Desktop Entry]\nExec=a\n[Desktop Action quiet]\nHidden=true\n", true},
        {"[Desktop Action quiet]\nHidden=true\n[Desktop Entry]\nExec=a\n", true},
        {"[Desktop Entry]\nNoDisplay=true\nHidden=true", false},
    };
    for (const Case& c : cases)
        EXPECT_EQ(AutostartEntry::launchesAtLogin(c.text), c.launches) << c.text;
    const QByteArray ours = AutostartEntry::text(QStringLiteral("vorlune")).toUtf8();
    EXPECT_TRUE(AutostartEntry::launchesAtLogin(ours.toStdString()));
}

TEST(AutostartEntry, ExecArgumentQuotesAndEscapesReservedCharacters) {
    struct Case {
        const char* program;
        const char* argument;
    };
    const Case cases[] = {
        {"/usr/bin/vorlune", "/usr/bin/vorlune"},
        {"/opt/My Apps/vorlune", "\"/opt/My Apps/vorlune\""},
        {"/tmp/100%/vorlune", "/tmp/100%%/vorlune"},
        {"/tmp/$HOME/vorlune", "\"/tmp/\\\\$HOME/vorlune\""},
        {"/tmp/a\"b/vorlune", "\"/tmp/a\\\\\"b/vorlune\""},
        {"/tmp/back\\slash", "\"/tmp/back\\\\\\\\slash\""},
    };
    for (const Case& c : cases)
        EXPECT_EQ(AutostartEntry::execArgument(QString::fromUtf8(c.program)),
                  QString::fromUtf8(c.argument))
            << c.program;
}

class LaunchAtLoginTest : public SettingsWindowTest {
protected:
    void TearDown() override {
        qputenv("PATH", savedPath);
        SettingsWindowTest::TearDown();
    }

    QString entryPath() const { return configDir() + "/autostart/vorlune.desktop"; }

    /// Makes PATH hold only `dir`.
    void pathOnly(const QString& dir) { qputenv("PATH", dir.toLocal8Bit()); }

    static QString runningExecutable() { return QCoreApplication::applicationFilePath(); }

    QByteArray savedPath = qgetenv("PATH");
};

TEST_F(LaunchAtLoginTest, DefaultsToTheUsersConfigFolder) {
    EXPECT_EQ(LaunchAtLogin().entryPath(), entryPath());
}

TEST_F(LaunchAtLoginTest, OnWritesTheEntryAndOffRemovesIt) {
    const LaunchAtLogin login(configDir(), runningExecutable());
    pathOnly(home.filePath("empty-bin"));
    EXPECT_FALSE(login.isEnabled());

    EXPECT_EQ(login.setEnabled(true), std::nullopt);
    EXPECT_TRUE(QFileInfo::exists(entryPath()));
    EXPECT_TRUE(login.isEnabled());
    const QByteArray entry = readFile(entryPath());
    EXPECT_TRUE(entry.startsWith("[Desktop Entry]\n"));
    EXPECT_TRUE(entry.contains("\nType=Application\n"));
    EXPECT_TRUE(entry.contains("\nExec=" + runningExecutable().toUtf8() + "\n")) << entry.data();

    EXPECT_EQ(login.setEnabled(false), std::nullopt);
    EXPECT_FALSE(QFileInfo::exists(entryPath()));
    EXPECT_FALSE(login.isEnabled());
    // Off when already off is no failure.
    EXPECT_EQ(login.setEnabled(false), std::nullopt);
}

TEST_F(LaunchAtLoginTest, ASwitchedOffEntryReadsOffAndTurningOnRewritesIt) {
    ASSERT_TRUE(QDir().mkpath(configDir() + "/autostart"));
    writeFile(entryPath(), "[Desktop Entry]\nExec=vorlune\nX-GNOME-Autostart-enabled=false\n");
    const LaunchAtLogin login(configDir(), runningExecutable());
    EXPECT_FALSE(login.isEnabled());
    EXPECT_EQ(login.setEnabled(true), std::nullopt);
    EXPECT_TRUE(login.isEnabled());
}

TEST_F(LaunchAtLoginTest, ExecIsTheBareNameOnlyWhenPathFindsThisExecutable) {
    const QString bin = home.filePath("bin");
    ASSERT_TRUE(QDir().mkpath(bin));
    const LaunchAtLogin login(configDir(), runningExecutable());

    pathOnly(bin);
    EXPECT_EQ(login.execCommand(), runningExecutable());

    ASSERT_TRUE(QFile::link(runningExecutable(), bin + "/vorlune"));
    EXPECT_EQ(login.execCommand(), "vorlune");

    // Another program of the same name is not this one.
    ASSERT_TRUE(QFile::remove(bin + "/vorlune"));
    writeFile(bin + "/vorlune", "#!/bin/sh\n");
    ASSERT_TRUE(QFile::setPermissions(bin + "/vorlune", QFile::ReadOwner | QFile::ExeOwner));
    EXPECT_EQ(login.execCommand(), runningExecutable());
}

TEST_F(LaunchAtLoginTest, FailuresComeBackWithADescription) {
    // A file where the autostart folder must be: root cannot write through that.
    writeFile(configDir() + "/autostart", "not a folder");
    const LaunchAtLogin login(configDir(), runningExecutable());
    const auto onError = login.setEnabled(true);
    ASSERT_TRUE(onError.has_value());
    EXPECT_TRUE(onError->contains("autostart")) << onError->toStdString();
    EXPECT_FALSE(login.isEnabled());

    // A folder where the entry must be cannot be removed as a file.
    ASSERT_TRUE(QFile::remove(configDir() + "/autostart"));
    ASSERT_TRUE(QDir().mkpath(entryPath() + "/inside"));
    const auto offError = login.setEnabled(false);
    ASSERT_TRUE(offError.has_value());
    EXPECT_FALSE(offError->isEmpty());
}

TEST_F(LaunchAtLoginTest, SwitchReportsAFailureOnStandardOutputOnly) {
    writeFile(configDir() + "/autostart", "not a folder");
    GeneralSettingsView general(*settings, LaunchAtLogin(configDir(), runningExecutable()));
    auto* toggle = child<ToggleSwitch>(general, QStringLiteral("launchAtLogin"));
    ASSERT_NE(toggle, nullptr);
    const auto windowsBefore = QApplication::topLevelWidgets().size();

    testing::internal::CaptureStdout();
    toggle->click();
    const std::string output = testing::internal::GetCapturedStdout();

    EXPECT_EQ(output.rfind("Failed to set launch at login: ", 0), 0u) << output;
    EXPECT_GT(output.size(), std::string("Failed to set launch at login: \n").size());
    EXPECT_EQ(output.back(), '\n');
    EXPECT_EQ(std::count(output.begin(), output.end(), '\n'), 1);
    EXPECT_EQ(QApplication::topLevelWidgets().size(), windowsBefore);
}

TEST_F(LaunchAtLoginTest, SwitchShowsTheEntryEachTimeTheTabAppears) {
    const LaunchAtLogin login(configDir(), runningExecutable());
    GeneralSettingsView general(*settings, login);
    auto* toggle = child<ToggleSwitch>(general, QStringLiteral("launchAtLogin"));
    ASSERT_NE(toggle, nullptr);
    EXPECT_FALSE(toggle->isChecked());

    testing::internal::CaptureStdout();
    toggle->click();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_TRUE(login.isEnabled());

    general.show();
    EXPECT_TRUE(toggle->isChecked());
    general.hide();
    writeFile(entryPath(), "[Desktop Entry]\nHidden=true\n");
    general.show();
    EXPECT_FALSE(toggle->isChecked());
    EXPECT_TRUE(QFileInfo::exists(entryPath()));

    toggle->click();
    toggle->click();
    EXPECT_FALSE(QFileInfo::exists(entryPath()));
}

} // namespace
