#include "SettingsPropertyText.h"
#include "SettingsTestSupport.h"

#include "settings/AppSettings.h"

#include <QDir>
#include <QSignalSpy>
#include <QTest>
#include <cstdio>
#include <gtest/gtest.h>
#include <random>

namespace {

const std::vector<std::string> declarationOrder = {"appearanceMode",
                                                   "displayMode",
                                                   "updateInterval",
                                                   "showCPU",
                                                   "showMemory",
                                                   "showDisk",
                                                   "showNetwork",
                                                   "showTemperature",
                                                   "showFan",
                                                   "graphWidth",
                                                   "graphHeight",
                                                   "themePreset",
                                                   "persistentDisplayStyle",
                                                   "persistShowIcons",
                                                   "persistCPU",
                                                   "persistMemory",
                                                   "persistDisk",
                                                   "persistNetworkIn",
                                                   "persistNetworkOut",
                                                   "persistNetwork",
                                                   "networkCombined",
                                                   "persistCPUTemp",
                                                   "persistGPUTemp",
                                                   "persistFan",
                                                   "styleCPU",
                                                   "styleMemory",
                                                   "styleDisk",
                                                   "styleNetworkIn",
                                                   "styleNetworkOut",
                                                   "styleNetwork",
                                                   "styleCPUTemp",
                                                   "styleGPUTemp",
                                                   "styleFan",
                                                   "cpuColorHex",
                                                   "memoryColorHex",
                                                   "diskColorHex",
                                                   "networkColorHex",
                                                   "temperatureColorHex",
                                                   "fanColorHex"};

class SettingsStore : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(dir.isValid()); }

    // No portal: these tests must not depend on the desktop they run on.
    std::unique_ptr<AppSettings> open(const QString& path) const {
        return std::make_unique<AppSettings>(path, std::make_unique<SystemColorScheme>(QString()));
    }
    std::unique_ptr<AppSettings> open() const { return open(path()); }
    QString path() const { return dir.filePath(QStringLiteral("vorlune.conf")); }

    std::map<std::string, std::string> defaultsAsText() const {
        QTemporaryDir empty;
        auto fresh = open(empty.filePath(QStringLiteral("none.conf")));
        std::map<std::string, std::string> values;
        for (const std::string& name : settings_text::names(*fresh))
            values[name] = settings_text::read(*fresh, name.c_str());
        return values;
    }

    QTemporaryDir dir;
};

TEST_F(SettingsStore, FreshStoreGivesEveryDefault) {
    const auto settings = open();
    EXPECT_EQ(settings_text::names(*settings), declarationOrder);
    const AppSettings& s = *settings;
    EXPECT_EQ(s.appearanceMode(), AppearanceMode::system);
    EXPECT_EQ(s.displayMode(), DisplayMode::graphAndText);
    EXPECT_EQ(s.updateInterval(), 2.0);
    for (bool shown : {s.showCPU(), s.showMemory(), s.showDisk(), s.showNetwork(),
                       s.showTemperature(), s.showFan(), s.persistShowIcons()})
        EXPECT_TRUE(shown);
    EXPECT_EQ(s.graphWidth(), 40.0);
    EXPECT_EQ(s.graphHeight(), 18.0);
    EXPECT_EQ(s.themePreset(), ThemePreset::colorful);
    EXPECT_EQ(s.persistentDisplayStyle(), PersistentStyle::graphAndText);
    for (bool enabled : {s.persistCPU(), s.persistMemory(), s.persistDisk(), s.persistNetworkIn(),
                         s.persistNetworkOut(), s.persistNetwork(), s.networkCombined(),
                         s.persistCPUTemp(), s.persistGPUTemp(), s.persistFan()})
        EXPECT_FALSE(enabled);
    for (const QString& style :
         {s.styleCPU(), s.styleMemory(), s.styleDisk(), s.styleNetworkIn(), s.styleNetworkOut(),
          s.styleNetwork(), s.styleCPUTemp(), s.styleGPUTemp(), s.styleFan()})
        EXPECT_EQ(style, QString());
    EXPECT_EQ(s.cpuColorHex(), "007AFF");
    EXPECT_EQ(s.memoryColorHex(), "34C759");
    EXPECT_EQ(s.diskColorHex(), "FF9500");
    EXPECT_EQ(s.networkColorHex(), "AF52DE");
    EXPECT_EQ(s.temperatureColorHex(), "FF3B30");
    EXPECT_EQ(s.fanColorHex(), "5AC8FA");
    EXPECT_TRUE(s.fanPercentages().empty());
    EXPECT_FALSE(QFile::exists(path())) << "reading must not create the file";
}

// A value other than the default for every setting, with strings that INI
// files treat specially (commas, a leading @, blanks at the ends, quotes).
const std::vector<std::pair<std::string, std::string>> nonDefaults = {
    {"appearanceMode", "Dark"},
    {"displayMode", "Text Only"},
    {"updateInterval", "0.1"},
    {"showCPU", "false"},
    {"showMemory", "false"},
    {"showDisk", "false"},
    {"showNetwork", "false"},
    {"showTemperature", "false"},
    {"showFan", "false"},
    {"graphWidth", "123.456"},
    {"graphHeight", "1e-07"},
    {"themePreset", "Mono Dark"},
    {"persistentDisplayStyle", "Graph Only"},
    {"persistShowIcons", "false"},
    {"persistCPU", "true"},
    {"persistMemory", "true"},
    {"persistDisk", "true"},
    {"persistNetworkIn", "true"},
    {"persistNetworkOut", "true"},
    {"persistNetwork", "true"},
    {"networkCombined", "true"},
    {"persistCPUTemp", "true"},
    {"persistGPUTemp", "true"},
    {"persistFan", "true"},
    {"styleCPU", "Graph & Text"},
    {"styleMemory", "Text Only"},
    {"styleDisk", "a, b"},
    {"styleNetworkIn", "@at"},
    {"styleNetworkOut", " padded "},
    {"styleNetwork", "semi;colon = \"quoted\""},
    {"styleCPUTemp", "Gr\xc3\xbcn \xe2\x98\x83"},
    {"styleGPUTemp", "back\\slash"},
    {"styleFan", "true"},
    {"cpuColorHex", "ABCDEF"},
    {"memoryColorHex", "#123456"},
    {"diskColorHex", ""},
    {"networkColorHex", "zz"},
    {"temperatureColorHex", "2"},
    {"fanColorHex", "000000"},
};

TEST_F(SettingsStore, EveryTypeRoundTripsThroughTheStandardFileToAnotherProcess) {
    // The standard location follows XDG_CONFIG_HOME; QSettings caches it on first
    // use, so this is the only test that opens the standard store.
    qputenv("XDG_CONFIG_HOME", dir.path().toUtf8());
    const QString expectedFile = dir.filePath(QStringLiteral("vorlune/vorlune.conf"));
    {
        AppSettings settings;
        ASSERT_EQ(settings.fileName(), expectedFile);
        for (const auto& [key, text] : nonDefaults) {
            ASSERT_TRUE(settings_text::write(settings, key.c_str(), text)) << key;
            EXPECT_EQ(settings_text::read(settings, key.c_str()), text) << key;
        }
        settings.setFanPercentages({{0, 42.5}, {1, 100.0}, {17, 0.1}});
    }

    const ProbeResult other = runProbe({QStringLiteral("--standard"), QStringLiteral("dump")});
    ASSERT_EQ(other.exitCode, 0);
    EXPECT_EQ(other.values.at("file"), expectedFile.toStdString());
    for (const auto& [key, text] : nonDefaults)
        EXPECT_EQ(other.values.at(key), text) << key;
    EXPECT_EQ(other.values.at("fanPercentages/0"), "42.5");
    EXPECT_EQ(other.values.at("fanPercentages/1"), "100");
    EXPECT_EQ(other.values.at("fanPercentages/17"), "0.1");
    EXPECT_EQ(other.values.size(), 1 + declarationOrder.size() + 3);

    // Readable and editable by hand: plain words, numbers and raw values.
    const QByteArray file = readTextFile(expectedFile);
    for (const char* line : {"showCPU=false", "updateInterval=0.1", "displayMode=Text Only",
                             "themePreset=Mono Dark", "[fanPercentages]", "17=0.1"})
        EXPECT_TRUE(file.contains(line)) << line << "\n" << file.toStdString();
}

struct HandWritten {
    const char* line;
    const char* key;
    const char* reads;
};

// Each wrong value reads as the default; defaults are chosen so a lenient
// conversion would show (garbage on a false-by-default switch, and so on).
const HandWritten handWritten[] = {
    {"appearanceMode=dark", "appearanceMode", "System"},
    {"displayMode=Text only", "displayMode", "Graph & Text"},
    {"updateInterval=fast", "updateInterval", "2"},
    {"graphWidth=inf", "graphWidth", "40"},
    {"graphHeight=0x12", "graphHeight", "18"},
    {"themePreset=mono", "themePreset", "Colorful"},
    {"persistentDisplayStyle=Graph Only!", "persistentDisplayStyle", "Graph & Text"},
    {"showCPU=0", "showCPU", "true"},
    {"showMemory=FALSE", "showMemory", "true"},
    {"showDisk=", "showDisk", "true"},
    {"showNetwork=no", "showNetwork", "true"},
    {"persistCPU=abc", "persistCPU", "false"},
    {"persistMemory=1", "persistMemory", "false"},
    {"persistDisk=True", "persistDisk", "false"},
    {"persistNetworkIn=yes", "persistNetworkIn", "false"},
    {"persistNetworkOut=\"true, false\"", "persistNetworkOut", "false"},
    {"persistNetwork=true, false", "persistNetwork", "false"},
    {"persistCPUTemp=@Variant(\\0\\0\\0\\x1\\0\\x1)", "persistCPUTemp", "false"},
    {"cpuColorHex=00, 7A, FF", "cpuColorHex", "007AFF"},
    {"memoryColorHex=@ByteArray(123456)", "memoryColorHex", "34C759"},
    // Right values written by hand are taken as they are.
    {"showTemperature=false", "showTemperature", "false"},
    {"networkCombined=true", "networkCombined", "true"},
    {"graphWidth2=1", "graphWidth", "40"},
    {"styleFan=Graph Only", "styleFan", "Graph Only"},
    {"styleCPU=anything at all", "styleCPU", "anything at all"},
    {"diskColorHex=#ff9500", "diskColorHex", "#ff9500"},
    {"fanColorHex=1e3", "fanColorHex", "1e3"},
    {"persistentDisplayStyle2=Text Only", "persistentDisplayStyle", "Graph & Text"},
};

TEST_F(SettingsStore, HandWrittenWrongTypesAndUnknownValuesReadAsDefaults) {
    QByteArray file = "[General]\n";
    for (const HandWritten& row : handWritten)
        file += QByteArray(row.line) + "\n";
    writeTextFile(path(), file);
    const auto settings = open();
    for (const HandWritten& row : handWritten)
        EXPECT_EQ(settings_text::read(*settings, row.key), row.reads) << row.line;
}

TEST_F(SettingsStore, EnumerationStoredAsItsRawValueReadsThatCase) {
    writeTextFile(path(), "[General]\ndisplayMode=Text Only\nthemePreset=Mono Light\n"
                          "appearanceMode=Light\npersistentDisplayStyle=Graph Only\n");
    const auto settings = open();
    EXPECT_EQ(settings->displayMode(), DisplayMode::textOnly);
    EXPECT_EQ(settings->themePreset(), ThemePreset::monoDark);
    EXPECT_EQ(settings->appearanceMode(), AppearanceMode::light);
    EXPECT_EQ(settings->persistentDisplayStyle(), PersistentStyle::graphOnly);
}

TEST_F(SettingsStore, GarbageFileGivesDefaultsAndIsKeptUntilTheUserChangesSomething) {
    std::mt19937 random(7);
    QByteArray garbage;
    for (int i = 0; i < 4096; ++i)
        garbage += char(random() & 0xFF);
    garbage += "\n[[[\n=\n=showCPU\nshowCPU\n\\\n[General\n";
    writeTextFile(path(), garbage);

    const auto defaults = defaultsAsText();
    {
        const auto settings = open();
        for (const auto& [key, text] : defaults)
            EXPECT_EQ(settings_text::read(*settings, key.c_str()), text) << key;
        EXPECT_TRUE(settings->fanPercentages().empty());
        EXPECT_FALSE(settings->reloadIfChanged());
    }
    EXPECT_EQ(readTextFile(path()), garbage) << "reading must not rewrite the file";

    open()->setShowCPU(false);
    const ProbeResult other = runProbe({path(), QStringLiteral("dump")});
    ASSERT_EQ(other.exitCode, 0);
    for (const auto& [key, text] : defaults)
        EXPECT_EQ(other.values.at(key), key == "showCPU" ? "false" : text) << key;
}

TEST_F(SettingsStore, UnusableFileLocationReadsDefaultsAndWritesDoNotCrash) {
    // A folder where the file must be: the write cannot land.
    ASSERT_TRUE(QDir(dir.path()).mkpath(QStringLiteral("vorlune.conf")));
    const auto defaults = defaultsAsText();
    const auto settings = open();
    for (const auto& [key, text] : defaults)
        EXPECT_EQ(settings_text::read(*settings, key.c_str()), text) << key;
    QSignalSpy notices(settings.get(), &AppSettings::objectWillChange);
    settings->setPersistCPU(true);
    settings->setFanPercentages({{1, 50.0}});
    EXPECT_EQ(notices.count(), 1);
    EXPECT_TRUE(QFileInfo(path()).isDir());
}

TEST_F(SettingsStore, EveryWriteNotifiesOnceAfterStoringAndFlushesAtOnce) {
    const auto settings = open();
    std::vector<std::string> seenByObserver;
    QObject::connect(settings.get(), &AppSettings::objectWillChange, [&] {
        seenByObserver.push_back(settings_text::read(*settings, "graphWidth"));
    });
    settings->setGraphWidth(55.5);
    settings->setGraphWidth(55.5);
    EXPECT_EQ(seenByObserver, (std::vector<std::string>{"55.5", "55.5"}));
    EXPECT_TRUE(readTextFile(path()).contains("graphWidth=55.5"));

    // The file watcher sees the program's own write but must not report it.
    QTest::qWait(300);
    EXPECT_EQ(seenByObserver.size(), 2u);
}

TEST_F(SettingsStore, WriteByAnotherProcessIsSeenWithoutRestart) {
    const auto settings = open();
    settings->setShowFan(false); // the file and its folder exist and are watched
    QSignalSpy notices(settings.get(), &AppSettings::objectWillChange);

    ASSERT_EQ(runProbe({path(), "set", "displayMode", "Text Only"}).exitCode, 0);
    ASSERT_TRUE(notices.wait(5000)) << "the file watcher did not report the change";
    EXPECT_EQ(settings->displayMode(), DisplayMode::textOnly);
    EXPECT_FALSE(settings->showFan());
    QTest::qWait(300);
    EXPECT_EQ(notices.count(), 1);
}

TEST_F(SettingsStore, TickFallbackSeesAnotherProcessEvenWithoutWatchableFolder) {
    // The folder does not exist yet, so nothing can be watched until it does.
    const QString nested = dir.filePath(QStringLiteral("later/vorlune.conf"));
    const auto settings = open(nested);
    QSignalSpy notices(settings.get(), &AppSettings::objectWillChange);
    EXPECT_FALSE(settings->reloadIfChanged());

    ASSERT_EQ(runProbe({nested, "set", "persistFan", "true"}).exitCode, 0);
    EXPECT_TRUE(settings->reloadIfChanged());
    EXPECT_TRUE(settings->persistFan());
    EXPECT_EQ(notices.count(), 1);
    EXPECT_FALSE(settings->reloadIfChanged());
    QTest::qWait(300);
    EXPECT_EQ(notices.count(), 1);
}

TEST_F(SettingsStore, FileRemovedOrReplacedByHandIsReadAgain) {
    const auto settings = open();
    settings->setShowCPU(false);
    ASSERT_TRUE(QFile::remove(path()));
    EXPECT_TRUE(settings->reloadIfChanged());
    EXPECT_TRUE(settings->showCPU()) << "a removed file means defaults again";

    // An editor saving under a new name and renaming over the file.
    writeTextFile(path() + ".new", "[General]\nthemePreset=Neon\n");
    ASSERT_EQ(std::rename((path() + ".new").toUtf8().constData(), path().toUtf8().constData()), 0);
    EXPECT_TRUE(settings->reloadIfChanged());
    EXPECT_EQ(settings->themePreset(), ThemePreset::neon);
}

TEST_F(SettingsStore, FanPercentagesAreAHandEditableGroup) {
    writeTextFile(path(), "[fanPercentages]\n2=55\nx=3\n4=abc\n-1=7.25\n5=\n6=inf\n+8=12\n"
                          "[General]\nshowCPU=false\n");
    const auto settings = open();
    EXPECT_EQ(settings->fanPercentages(),
              (std::map<long long, double>{{-1, 7.25}, {2, 55.0}, {8, 12.0}}));

    QSignalSpy notices(settings.get(), &AppSettings::objectWillChange);
    settings->setFanPercentages({{0, 30.0}, {3, 99.5}});
    EXPECT_EQ(notices.count(), 0) << "not one of the settings";
    EXPECT_EQ(settings->fanPercentages(), (std::map<long long, double>{{0, 30.0}, {3, 99.5}}));
    EXPECT_FALSE(settings->showCPU()) << "replacing the group keeps other settings";

    const ProbeResult other = runProbe({path(), QStringLiteral("dump")});
    EXPECT_EQ(other.values.at("fanPercentages/0"), "30");
    EXPECT_EQ(other.values.at("fanPercentages/3"), "99.5");
    EXPECT_EQ(other.values.count("fanPercentages/2"), 0u);
}

} // namespace
