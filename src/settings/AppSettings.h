#pragma once

#include "Enumerations.h"
#include "SystemColorScheme.h"

#include <QGuiApplication>
#include <QObject>
#include <QPalette>
#include <QString>
#include <map>
#include <memory>
#include <optional>
#include <string_view>
#include <type_traits>

class QSettings;
class SettingsFileWatcher;
enum class SettingKey;

/// Every user preference of the program, kept in the per-user settings file
/// (~/.config/vorlune/vorlune.conf, QSettings native format). Nothing is cached:
/// each getter reads the store, each setter writes the file at once and then emits
/// objectWillChange(). Values that do not parse as their type read as the default.
/// Lives on the main thread.
class AppSettings : public QObject {
    Q_OBJECT
    Q_PROPERTY(AppearanceMode appearanceMode READ appearanceMode WRITE setAppearanceMode NOTIFY
                   objectWillChange)
    Q_PROPERTY(
        DisplayMode displayMode READ displayMode WRITE setDisplayMode NOTIFY objectWillChange)
    Q_PROPERTY(
        double updateInterval READ updateInterval WRITE setUpdateInterval NOTIFY objectWillChange)
    Q_PROPERTY(bool showCPU READ showCPU WRITE setShowCPU NOTIFY objectWillChange)
    Q_PROPERTY(bool showMemory READ showMemory WRITE setShowMemory NOTIFY objectWillChange)
    Q_PROPERTY(bool showDisk READ showDisk WRITE setShowDisk NOTIFY objectWillChange)
    Q_PROPERTY(bool showNetwork READ showNetwork WRITE setShowNetwork NOTIFY objectWillChange)
    Q_PROPERTY(
        bool showTemperature READ showTemperature WRITE setShowTemperature NOTIFY objectWillChange)
    Q_PROPERTY(bool showFan READ showFan WRITE setShowFan NOTIFY objectWillChange)
    Q_PROPERTY(double graphWidth READ graphWidth WRITE setGraphWidth NOTIFY objectWillChange)
    Q_PROPERTY(double graphHeight READ graphHeight WRITE setGraphHeight NOTIFY objectWillChange)
    Q_PROPERTY(
        ThemePreset themePreset READ themePreset WRITE setThemePreset NOTIFY objectWillChange)
    Q_PROPERTY(PersistentStyle persistentDisplayStyle READ persistentDisplayStyle WRITE
                   setPersistentDisplayStyle NOTIFY objectWillChange)
    Q_PROPERTY(bool persistShowIcons READ persistShowIcons WRITE setPersistShowIcons NOTIFY
                   objectWillChange)
    Q_PROPERTY(TrayTextPlacement persistTextPlacement READ persistTextPlacement WRITE
                   setPersistTextPlacement NOTIFY objectWillChange)
    Q_PROPERTY(bool persistCPU READ persistCPU WRITE setPersistCPU NOTIFY objectWillChange)
    Q_PROPERTY(bool persistMemory READ persistMemory WRITE setPersistMemory NOTIFY objectWillChange)
    Q_PROPERTY(bool persistDisk READ persistDisk WRITE setPersistDisk NOTIFY objectWillChange)
    Q_PROPERTY(bool persistNetworkIn READ persistNetworkIn WRITE setPersistNetworkIn NOTIFY
                   objectWillChange)
    Q_PROPERTY(bool persistNetworkOut READ persistNetworkOut WRITE setPersistNetworkOut NOTIFY
                   objectWillChange)
    Q_PROPERTY(
        bool persistNetwork READ persistNetwork WRITE setPersistNetwork NOTIFY objectWillChange)
    Q_PROPERTY(
        bool networkCombined READ networkCombined WRITE setNetworkCombined NOTIFY objectWillChange)
    Q_PROPERTY(
        bool persistCPUTemp READ persistCPUTemp WRITE setPersistCPUTemp NOTIFY objectWillChange)
    Q_PROPERTY(
        bool persistGPUTemp READ persistGPUTemp WRITE setPersistGPUTemp NOTIFY objectWillChange)
    Q_PROPERTY(bool persistFan READ persistFan WRITE setPersistFan NOTIFY objectWillChange)
    Q_PROPERTY(QString styleCPU READ styleCPU WRITE setStyleCPU NOTIFY objectWillChange)
    Q_PROPERTY(QString styleMemory READ styleMemory WRITE setStyleMemory NOTIFY objectWillChange)
    Q_PROPERTY(QString styleDisk READ styleDisk WRITE setStyleDisk NOTIFY objectWillChange)
    Q_PROPERTY(
        QString styleNetworkIn READ styleNetworkIn WRITE setStyleNetworkIn NOTIFY objectWillChange)
    Q_PROPERTY(QString styleNetworkOut READ styleNetworkOut WRITE setStyleNetworkOut NOTIFY
                   objectWillChange)
    Q_PROPERTY(QString styleNetwork READ styleNetwork WRITE setStyleNetwork NOTIFY objectWillChange)
    Q_PROPERTY(QString styleCPUTemp READ styleCPUTemp WRITE setStyleCPUTemp NOTIFY objectWillChange)
    Q_PROPERTY(QString styleGPUTemp READ styleGPUTemp WRITE setStyleGPUTemp NOTIFY objectWillChange)
    Q_PROPERTY(QString styleFan READ styleFan WRITE setStyleFan NOTIFY objectWillChange)
    Q_PROPERTY(QString cpuColorHex READ cpuColorHex WRITE setCpuColorHex NOTIFY objectWillChange)
    Q_PROPERTY(
        QString memoryColorHex READ memoryColorHex WRITE setMemoryColorHex NOTIFY objectWillChange)
    Q_PROPERTY(QString diskColorHex READ diskColorHex WRITE setDiskColorHex NOTIFY objectWillChange)
    Q_PROPERTY(QString networkColorHex READ networkColorHex WRITE setNetworkColorHex NOTIFY
                   objectWillChange)
    Q_PROPERTY(QString temperatureColorHex READ temperatureColorHex WRITE setTemperatureColorHex
                   NOTIFY objectWillChange)
    Q_PROPERTY(QString fanColorHex READ fanColorHex WRITE setFanColorHex NOTIFY objectWillChange)
    Q_PROPERTY(bool alertCPUTemp READ alertCPUTemp WRITE setAlertCPUTemp NOTIFY objectWillChange)
    Q_PROPERTY(double alertCPUTempLimit READ alertCPUTempLimit WRITE setAlertCPUTempLimit NOTIFY
                   objectWillChange)
    Q_PROPERTY(double alertCPUTempSeconds READ alertCPUTempSeconds WRITE setAlertCPUTempSeconds
                   NOTIFY objectWillChange)
    Q_PROPERTY(bool alertCPU READ alertCPU WRITE setAlertCPU NOTIFY objectWillChange)
    Q_PROPERTY(
        double alertCPULimit READ alertCPULimit WRITE setAlertCPULimit NOTIFY objectWillChange)
    Q_PROPERTY(double alertCPUSeconds READ alertCPUSeconds WRITE setAlertCPUSeconds NOTIFY
                   objectWillChange)
    Q_PROPERTY(bool alertMemory READ alertMemory WRITE setAlertMemory NOTIFY objectWillChange)
    Q_PROPERTY(double alertMemorySeconds READ alertMemorySeconds WRITE setAlertMemorySeconds NOTIFY
                   objectWillChange)
    Q_PROPERTY(bool alertDisk READ alertDisk WRITE setAlertDisk NOTIFY objectWillChange)
    Q_PROPERTY(
        double alertDiskLimit READ alertDiskLimit WRITE setAlertDiskLimit NOTIFY objectWillChange)
    Q_PROPERTY(double alertDiskSeconds READ alertDiskSeconds WRITE setAlertDiskSeconds NOTIFY
                   objectWillChange)

public:
    /// The standard per-user store ("vorlune"/"vorlune" under $XDG_CONFIG_HOME).
    explicit AppSettings(QObject* parent = nullptr);
    /// A store in an explicit file, e.g. for tests.
    explicit AppSettings(const QString& filePath, QObject* parent = nullptr);
    /// A store in an explicit file with its own source of the desktop's dark preference.
    AppSettings(const QString& filePath, std::unique_ptr<SystemColorScheme> systemScheme,
                QObject* parent = nullptr);
    ~AppSettings() override;

    /// The path of the settings file.
    QString fileName() const;

    AppearanceMode appearanceMode() const;
    void setAppearanceMode(AppearanceMode value);
    DisplayMode displayMode() const;
    void setDisplayMode(DisplayMode value);
    double updateInterval() const;
    void setUpdateInterval(double value);
    bool showCPU() const;
    void setShowCPU(bool value);
    bool showMemory() const;
    void setShowMemory(bool value);
    bool showDisk() const;
    void setShowDisk(bool value);
    bool showNetwork() const;
    void setShowNetwork(bool value);
    bool showTemperature() const;
    void setShowTemperature(bool value);
    bool showFan() const;
    void setShowFan(bool value);
    double graphWidth() const;
    void setGraphWidth(double value);
    double graphHeight() const;
    void setGraphHeight(double value);
    ThemePreset themePreset() const;
    void setThemePreset(ThemePreset value);
    PersistentStyle persistentDisplayStyle() const;
    void setPersistentDisplayStyle(PersistentStyle value);
    bool persistShowIcons() const;
    TrayTextPlacement persistTextPlacement() const;
    void setPersistTextPlacement(TrayTextPlacement value);
    void setPersistShowIcons(bool value);
    bool persistCPU() const;
    void setPersistCPU(bool value);
    bool persistMemory() const;
    void setPersistMemory(bool value);
    bool persistDisk() const;
    void setPersistDisk(bool value);
    bool persistNetworkIn() const;
    void setPersistNetworkIn(bool value);
    bool persistNetworkOut() const;
    void setPersistNetworkOut(bool value);
    bool persistNetwork() const;
    void setPersistNetwork(bool value);
    bool networkCombined() const;
    void setNetworkCombined(bool value);
    bool persistCPUTemp() const;
    void setPersistCPUTemp(bool value);
    bool persistGPUTemp() const;
    void setPersistGPUTemp(bool value);
    bool persistFan() const;
    void setPersistFan(bool value);
    QString styleCPU() const;
    void setStyleCPU(const QString& value);
    QString styleMemory() const;
    void setStyleMemory(const QString& value);
    QString styleDisk() const;
    void setStyleDisk(const QString& value);
    QString styleNetworkIn() const;
    void setStyleNetworkIn(const QString& value);
    QString styleNetworkOut() const;
    void setStyleNetworkOut(const QString& value);
    QString styleNetwork() const;
    void setStyleNetwork(const QString& value);
    QString styleCPUTemp() const;
    void setStyleCPUTemp(const QString& value);
    QString styleGPUTemp() const;
    void setStyleGPUTemp(const QString& value);
    QString styleFan() const;
    void setStyleFan(const QString& value);
    QString cpuColorHex() const;
    void setCpuColorHex(const QString& value);
    QString memoryColorHex() const;
    void setMemoryColorHex(const QString& value);
    QString diskColorHex() const;
    void setDiskColorHex(const QString& value);
    QString networkColorHex() const;
    void setNetworkColorHex(const QString& value);
    QString temperatureColorHex() const;
    void setTemperatureColorHex(const QString& value);
    QString fanColorHex() const;
    void setFanColorHex(const QString& value);

    // Alerts: each on or off, with the level (°C or % used) and how long it must last.
    bool alertCPUTemp() const;
    void setAlertCPUTemp(bool value);
    double alertCPUTempLimit() const;
    void setAlertCPUTempLimit(double value);
    double alertCPUTempSeconds() const;
    void setAlertCPUTempSeconds(double value);
    bool alertCPU() const;
    void setAlertCPU(bool value);
    double alertCPULimit() const;
    void setAlertCPULimit(double value);
    double alertCPUSeconds() const;
    void setAlertCPUSeconds(double value);
    bool alertMemory() const;
    void setAlertMemory(bool value);
    double alertMemorySeconds() const;
    void setAlertMemorySeconds(double value);
    bool alertDisk() const;
    void setAlertDisk(bool value);
    double alertDiskLimit() const;
    void setAlertDiskLimit(double value);
    double alertDiskSeconds() const;
    void setAlertDiskSeconds(double value);

    /// The style of one menu bar item: its own style setting when that holds a
    /// PersistentStyle raw value, else persistentDisplayStyle. `sensorKey` is a
    /// SensorType raw name ("cpu", "memory", "disk", "networkIn", "networkOut",
    /// "network", "cpuTemp", "gpuTemp", "fan"); any other key gets the global style.
    PersistentStyle effectiveStyle(std::string_view sensorKey) const;

    /// Light and Dark as set; System follows the desktop portal's color-scheme, or
    /// without a portal the application palette (dark when the window colour's
    /// lightness is below one half).
    bool isDarkAppearance() const;

    /// Writes themePreset and then the six colours (cpu, memory, disk, network,
    /// temperature, fan), each write with its own notice, then one more notice.
    /// "Mono" takes white or black from isDarkAppearance() once, before writing.
    void applyTheme(ThemePreset preset);

    /// The palette for the current appearanceMode: the Fusion light or dark palette, or
    /// nullopt (the platform's own palette and style) for System when the desktop has no
    /// preference or its palette already has the lightness it prefers.
    std::optional<QPalette> appearancePalette() const;
    /// Sets the application palette from appearanceMode. From then on a change of the
    /// desktop's preference re-applies it while appearanceMode is System.
    void applyAppearance(QGuiApplication& application);
    /// Sets one window's palette (any type with setPalette(QPalette), e.g. a QWidget):
    /// explicit for Light and Dark; for System the window follows the application.
    template <typename Window>
    requires(!std::is_base_of_v<QGuiApplication, Window>) void applyAppearance(
        Window& window) const {
        window.setPalette(appearanceMode() == AppearanceMode::system
                              ? QPalette()
                              : appearancePalette().value_or(QPalette()));
    }

    /// The fan override's saved percentages by fan id ([fanPercentages] group,
    /// decimal id = number). Entries whose id or value does not parse are skipped.
    std::map<long long, double> fanPercentages() const;
    /// Replaces the saved percentages and writes the file. Not one of the settings
    /// above, so it emits no notice.
    void setFanPercentages(const std::map<long long, double>& percentages);

    /// Re-reads the file when another process changed it since the last read or
    /// write, and then emits objectWillChange(). A file watcher calls this on its
    /// own; call it on every sampling tick as well so no change waits longer than
    /// one tick. Returns whether anything was re-read.
    bool reloadIfChanged();

signals:
    /// Emitted synchronously after every write is stored (so observers re-read the
    /// new value), after an external change to the file is read, and when the
    /// desktop's dark preference changes.
    void objectWillChange();

private:
    AppSettings(std::unique_ptr<QSettings> store, std::unique_ptr<SystemColorScheme> systemScheme,
                QObject* parent);
    void onSystemSchemeChanged();

    std::optional<QString> storedText(SettingKey key) const;
    bool readBool(SettingKey key) const;
    double readDouble(SettingKey key) const;
    QString readString(SettingKey key) const;
    template <typename E> E readEnum(SettingKey key) const;

    void writeText(SettingKey key, const QString& text);
    void writeBool(SettingKey key, bool value);
    void writeDouble(SettingKey key, double value);
    void writeString(SettingKey key, const QString& value);
    template <typename E> void writeEnum(SettingKey key, E value);
    void flush();
    void retryUnsavedWrites();

    std::unique_ptr<QSettings> store_;
    std::map<QString, QString> unsavedWrites_;
    SettingsFileWatcher* watcher_ = nullptr;
    SystemColorScheme* systemScheme_ = nullptr;
    bool applicationAppearanceManaged_ = false;
    /// Whether the platform's own palette, as found before ours was ever set, is dark.
    std::optional<bool> platformPaletteDark_;
    bool ownPaletteSet_ = false;
};
