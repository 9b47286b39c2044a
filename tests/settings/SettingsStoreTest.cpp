#include "support/SettingsHome.h"
#include "support/TempDir.h"

#include <QProcess>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>
#include <random>

namespace {

using Dump = std::map<std::string, std::string>;

// Every setting as another process reads it (empty when the probe fails), after it
// writes "KEY TEXT" when given.
Dump probe(const QStringList& arguments) {
    QProcess process;
    process.start(QStringLiteral(VORLUNE_SETTINGS_PROBE), arguments);
    Dump values;
    if (!process.waitForFinished(30000) || process.exitCode() != 0)
        return values;
    for (const QByteArray& line : process.readAllStandardOutput().split('\n'))
        if (const qsizetype equals = line.indexOf('='); equals > 0)
            values[line.left(equals).toStdString()] = line.mid(equals + 1).toStdString();
    return values;
}

void writeFile(const QString& path, const std::string& text) {
    std::ofstream(path.toStdString(), std::ios::binary | std::ios::trunc) << text;
}

struct HandWritten {
    const char* line;
    const char* key;
    const char* reads;
};

// A wrong value reads as the default; the defaults are such that a lenient conversion
// would show. Right values written by hand are taken as they are.
const HandWritten handWritten[] = {
    {"appearanceMode=dark", "appearanceMode", "System"},
    {"updateInterval=fast", "updateInterval", "2"},
    {"graphWidth=inf", "graphWidth", "40"},
    {"graphHeight=0x12", "graphHeight", "18"},
    {"showCPU=0", "showCPU", "true"},
    {"showMemory=FALSE", "showMemory", "true"},
    {"persistCPU=1", "persistCPU", "false"},
    {"persistNetwork=true, false", "persistNetwork", "false"},
    {"persistFan=@Variant(\\0\\0\\0\\x1\\0\\x1)", "persistFan", "false"},
    {"cpuColorHex=00, 7A, FF", "cpuColorHex", "007AFF"},
    {"themePreset=Mono Light", "themePreset", "Mono Light"},
    {"showTemperature=false", "showTemperature", "false"},
    {"styleCPU=anything at all", "styleCPU", "anything at all"},
    {"diskColorHex=#ff9500", "diskColorHex", "#ff9500"},
    {"fanPercentages/2=55", "fanPercentages/2", "55"},
    {"fanPercentages/+8=12.5", "fanPercentages/8", "12.5"},
};

TEST(SettingsStore, GarbageOrWrongValuesReadAsDefaultsAndAWriteLosesNothingElse) {
    SettingsHome home;
    const Dump defaults = probe({home.path("none.conf")});
    ASSERT_FALSE(defaults.empty());
    std::mt19937 random(7);
    std::string garbage(4096, '\0');
    for (char& byte : garbage)
        byte = char(random());
    std::string partial = "[General]\nfanPercentages/x=3\nfanPercentages/4=inf\n";
    for (const HandWritten& row : handWritten)
        partial += std::string(row.line) + "\n";

    for (const auto& [name, text] :
         {std::pair("garbage", garbage + "\n[[[\n=\nshowCPU\n[General\n"),
          std::pair("hand-written", partial)}) {
        SCOPED_TRACE(name);
        const QString file = home.path(name);
        writeFile(file, text);
        Dump expected = defaults;
        expected["file"] = file.toStdString();
        for (const HandWritten& row : handWritten)
            if (text == partial)
                expected[row.key] = row.reads;
        EXPECT_EQ(probe({file}), expected);
        EXPECT_EQ(readFile(file.toStdString()), text) << "reading must not rewrite the file";

        AppSettings(file, std::make_unique<SystemColorScheme>(QString())).setShowFan(false);
        expected["showFan"] = "false";
        EXPECT_EQ(probe({file}), expected);
    }
}

TEST(SettingsStore, ValuesOfEveryTypeSurviveInTheStandardFileForTheNextProcess) {
    SettingsHome home; // the standard location follows XDG_CONFIG_HOME
    {
        AppSettings settings;
        settings.setThemePreset(ThemePreset::monoLight);
        settings.setGraphWidth(123.456);
        settings.setShowCPU(false);
        settings.setStyleNetwork(QStringLiteral(" a, b; @c = \"q\"\\ "));
        settings.setFanPercentages({{0, 42.5}, {17, 0.1}});
    }
    const Dump stored = probe({QStringLiteral("--standard")});
    const std::string standardFile = (home.configDir() + "/vorlune/vorlune.conf").toStdString();
    const std::pair<std::string, std::string> expected[] = {
        {"file", standardFile},
        {"themePreset", "Mono Dark"},
        {"graphWidth", "123.456"},
        {"showCPU", "false"},
        {"styleNetwork", " a, b; @c = \"q\"\\ "},
        {"fanPercentages/0", "42.5"},
        {"fanPercentages/17", "0.1"},
    };
    for (const auto& [key, text] : expected)
        EXPECT_EQ(stored.count(key) ? stored.at(key) : "<missing>", text) << key;
    // Plain words and numbers, so the file can be edited by hand.
    const std::string file = readFile(standardFile);
    for (const char* line : {"themePreset=Mono Dark\n", "showCPU=false\n", "17=0.1\n"})
        EXPECT_NE(file.find(line), std::string::npos) << line << " in\n" << file;
}

TEST(SettingsStore, AnotherProcessesWriteIsSeenWithoutRestartButOwnWritesAreNotReread) {
    SettingsHome home;
    const auto settings = home.open();
    QSignalSpy notices(settings.get(), &AppSettings::objectWillChange);
    settings->setShowFan(false); // the file and its folder now exist and are watched
    EXPECT_EQ(notices.count(), 1);
    ASSERT_EQ(probe({home.settingsFile(), "graphWidth", "55.5"})["graphWidth"], "55.5");
    ASSERT_TRUE(notices.wait(5000)) << "the file watcher did not report the change";
    EXPECT_EQ(settings->graphWidth(), 55.5);
    EXPECT_FALSE(settings->showFan());
    QTest::qWait(300);
    EXPECT_EQ(notices.count(), 2);
}

TEST(SettingsStore, AWriteThatCannotLandIsKeptAndWrittenOnceTheFileCanBe) {
    SettingsHome home;
    QDir().mkpath(home.settingsFile()); // a folder where the file must be
    const auto settings = home.open();
    settings->setPersistCPU(true);
    settings->setFanPercentages({{1, 50.0}});
    EXPECT_EQ(probe({home.settingsFile()})["persistCPU"], "false");
    ASSERT_TRUE(QDir(home.settingsFile()).removeRecursively());
    settings->reloadIfChanged(); // every sampling tick calls it
    EXPECT_EQ(probe({home.settingsFile()})["persistCPU"], "true");
}

} // namespace
