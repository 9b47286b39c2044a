// Launch at login as an XDG autostart entry in a scratch config folder.
#include "support/SettingsHome.h"
#include "support/TempDir.h"

#include "views/settings/AutostartEntry.h"
#include "views/settings/GeneralSettingsView.h"
#include "views/settings/LaunchAtLogin.h"
#include "views/settings/ToggleSwitch.h"

#include <gtest/gtest.h>

namespace {

TEST(AutostartEntry, OnlyTheDesktopEntryGroupCanSwitchItOff) {
    const std::pair<const char*, bool> cases[] = {
        {"[Desktop Entry]\r\nHidden = true\r\n", false},
        {"[Desktop Entry]\nHidden=True\n", true},
        {"[Desktop Entry]\nX-GNOME-Autostart-enabled=false\n", false},
        {"[Desktop Entry]\nExec=a\n[Desktop Action quiet]\nHidden=true\n", true},
        {"[Desktop Action quiet]\nHidden=true\n[Desktop Entry]\nExec=a\n", true},
        {"[Desktop Entry]\nNoDisplay=true\nHidden=true", false},
    };
    for (const auto& [text, launches] : cases)
        EXPECT_EQ(AutostartEntry::launchesAtLogin(text), launches) << text;
}

struct LaunchAtLoginTest : testing::Test {
    SettingsHome home;
    const LaunchAtLogin login{home.configDir(), QStringLiteral("/opt/My Apps/$vorlune%")};
    const std::string entry = login.entryPath().toStdString();
};

TEST_F(LaunchAtLoginTest, OnWritesAnEntryStartingTheProgramAndOffRemovesIt) {
    EXPECT_FALSE(login.isEnabled());
    EXPECT_EQ(login.setEnabled(true), std::nullopt);
    EXPECT_TRUE(login.isEnabled());
    // Quoted for the space, with "$" escaped and "%" doubled.
    const std::string exec = "\nExec=\"/opt/My Apps/\\\\$vorlune%%\"\n";
    EXPECT_NE(readFile(entry).find(exec), std::string::npos) << readFile(entry);

    std::ofstream(entry) << "[Desktop Entry]\nHidden=true\n";
    EXPECT_FALSE(login.isEnabled()) << "an entry switched off elsewhere";
    EXPECT_EQ(login.setEnabled(false), std::nullopt);
    EXPECT_FALSE(std::filesystem::exists(entry));
    EXPECT_EQ(login.setEnabled(false), std::nullopt) << "off when off is no failure";
}

TEST_F(LaunchAtLoginTest, AFolderWhereTheEntryGoesIsReportedOnStandardOutput) {
    std::filesystem::create_directories(entry);
    EXPECT_TRUE(login.setEnabled(true).has_value());
    EXPECT_TRUE(login.setEnabled(false).has_value());
    EXPECT_FALSE(login.isEnabled());

    const auto store = home.open();
    GeneralSettingsView general(*store, login);
    auto* toggle = general.findChild<ToggleSwitch*>("launchAtLogin");
    testing::internal::CaptureStdout();
    toggle->click();
    const std::string output = testing::internal::GetCapturedStdout();
    EXPECT_EQ(output.rfind("Failed to set launch at login: ", 0), 0u) << output;
    EXPECT_EQ(std::count(output.begin(), output.end(), '\n'), 1) << output;
}

} // namespace
