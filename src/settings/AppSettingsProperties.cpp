#include "AppSettings.h"

#include "SettingKey.h"

// One typed getter and setter per setting, in declaration order; parsing,
// defaults and writing are in AppSettings.cpp.

namespace {

QString rawText(std::string_view raw) {
    return QString::fromUtf8(raw.data(), qsizetype(raw.size()));
}

} // namespace

template <typename E> E AppSettings::readEnum(SettingKey key) const {
    if (const auto text = storedText(key))
        if (const auto value = fromRawValue<E>(text->toStdString()))
            return *value;
    return *fromRawValue<E>(settingDefinition(key).defaultText);
}

template <typename E> void AppSettings::writeEnum(SettingKey key, E value) {
    writeText(key, rawText(rawValue(value)));
}

AppearanceMode AppSettings::appearanceMode() const {
    return readEnum<AppearanceMode>(SettingKey::appearanceMode);
}
void AppSettings::setAppearanceMode(AppearanceMode value) {
    writeEnum(SettingKey::appearanceMode, value);
}
DisplayMode AppSettings::displayMode() const {
    return readEnum<DisplayMode>(SettingKey::displayMode);
}
void AppSettings::setDisplayMode(DisplayMode value) {
    writeEnum(SettingKey::displayMode, value);
}
double AppSettings::updateInterval() const {
    return readDouble(SettingKey::updateInterval);
}
void AppSettings::setUpdateInterval(double value) {
    writeDouble(SettingKey::updateInterval, value);
}
bool AppSettings::showCPU() const {
    return readBool(SettingKey::showCPU);
}
void AppSettings::setShowCPU(bool value) {
    writeBool(SettingKey::showCPU, value);
}
bool AppSettings::showMemory() const {
    return readBool(SettingKey::showMemory);
}
void AppSettings::setShowMemory(bool value) {
    writeBool(SettingKey::showMemory, value);
}
bool AppSettings::showDisk() const {
    return readBool(SettingKey::showDisk);
}
void AppSettings::setShowDisk(bool value) {
    writeBool(SettingKey::showDisk, value);
}
bool AppSettings::showNetwork() const {
    return readBool(SettingKey::showNetwork);
}
void AppSettings::setShowNetwork(bool value) {
    writeBool(SettingKey::showNetwork, value);
}
bool AppSettings::showTemperature() const {
    return readBool(SettingKey::showTemperature);
}
void AppSettings::setShowTemperature(bool value) {
    writeBool(SettingKey::showTemperature, value);
}
bool AppSettings::showFan() const {
    return readBool(SettingKey::showFan);
}
void AppSettings::setShowFan(bool value) {
    writeBool(SettingKey::showFan, value);
}
double AppSettings::graphWidth() const {
    return readDouble(SettingKey::graphWidth);
}
void AppSettings::setGraphWidth(double value) {
    writeDouble(SettingKey::graphWidth, value);
}
double AppSettings::graphHeight() const {
    return readDouble(SettingKey::graphHeight);
}
void AppSettings::setGraphHeight(double value) {
    writeDouble(SettingKey::graphHeight, value);
}
ThemePreset AppSettings::themePreset() const {
    return readEnum<ThemePreset>(SettingKey::themePreset);
}
void AppSettings::setThemePreset(ThemePreset value) {
    writeEnum(SettingKey::themePreset, value);
}
PersistentStyle AppSettings::persistentDisplayStyle() const {
    return readEnum<PersistentStyle>(SettingKey::persistentDisplayStyle);
}
void AppSettings::setPersistentDisplayStyle(PersistentStyle value) {
    writeEnum(SettingKey::persistentDisplayStyle, value);
}
TrayTextPlacement AppSettings::persistTextPlacement() const {
    return readEnum<TrayTextPlacement>(SettingKey::persistTextPlacement);
}
void AppSettings::setPersistTextPlacement(TrayTextPlacement value) {
    writeEnum(SettingKey::persistTextPlacement, value);
}

bool AppSettings::persistShowIcons() const {
    return readBool(SettingKey::persistShowIcons);
}
void AppSettings::setPersistShowIcons(bool value) {
    writeBool(SettingKey::persistShowIcons, value);
}
bool AppSettings::persistCPU() const {
    return readBool(SettingKey::persistCPU);
}
void AppSettings::setPersistCPU(bool value) {
    writeBool(SettingKey::persistCPU, value);
}
bool AppSettings::persistMemory() const {
    return readBool(SettingKey::persistMemory);
}
void AppSettings::setPersistMemory(bool value) {
    writeBool(SettingKey::persistMemory, value);
}
bool AppSettings::persistDisk() const {
    return readBool(SettingKey::persistDisk);
}
void AppSettings::setPersistDisk(bool value) {
    writeBool(SettingKey::persistDisk, value);
}
bool AppSettings::persistNetworkIn() const {
    return readBool(SettingKey::persistNetworkIn);
}
void AppSettings::setPersistNetworkIn(bool value) {
    writeBool(SettingKey::persistNetworkIn, value);
}
bool AppSettings::persistNetworkOut() const {
    return readBool(SettingKey::persistNetworkOut);
}
void AppSettings::setPersistNetworkOut(bool value) {
    writeBool(SettingKey::persistNetworkOut, value);
}
bool AppSettings::persistNetwork() const {
    return readBool(SettingKey::persistNetwork);
}
void AppSettings::setPersistNetwork(bool value) {
    writeBool(SettingKey::persistNetwork, value);
}
bool AppSettings::networkCombined() const {
    return readBool(SettingKey::networkCombined);
}
void AppSettings::setNetworkCombined(bool value) {
    writeBool(SettingKey::networkCombined, value);
}
bool AppSettings::persistCPUTemp() const {
    return readBool(SettingKey::persistCPUTemp);
}
void AppSettings::setPersistCPUTemp(bool value) {
    writeBool(SettingKey::persistCPUTemp, value);
}
bool AppSettings::persistGPUTemp() const {
    return readBool(SettingKey::persistGPUTemp);
}
void AppSettings::setPersistGPUTemp(bool value) {
    writeBool(SettingKey::persistGPUTemp, value);
}
bool AppSettings::persistFan() const {
    return readBool(SettingKey::persistFan);
}
void AppSettings::setPersistFan(bool value) {
    writeBool(SettingKey::persistFan, value);
}
QString AppSettings::styleCPU() const {
    return readString(SettingKey::styleCPU);
}
void AppSettings::setStyleCPU(const QString& value) {
    writeString(SettingKey::styleCPU, value);
}
QString AppSettings::styleMemory() const {
    return readString(SettingKey::styleMemory);
}
void AppSettings::setStyleMemory(const QString& value) {
    writeString(SettingKey::styleMemory, value);
}
QString AppSettings::styleDisk() const {
    return readString(SettingKey::styleDisk);
}
void AppSettings::setStyleDisk(const QString& value) {
    writeString(SettingKey::styleDisk, value);
}
QString AppSettings::styleNetworkIn() const {
    return readString(SettingKey::styleNetworkIn);
}
void AppSettings::setStyleNetworkIn(const QString& value) {
    writeString(SettingKey::styleNetworkIn, value);
}
QString AppSettings::styleNetworkOut() const {
    return readString(SettingKey::styleNetworkOut);
}
void AppSettings::setStyleNetworkOut(const QString& value) {
    writeString(SettingKey::styleNetworkOut, value);
}
QString AppSettings::styleNetwork() const {
    return readString(SettingKey::styleNetwork);
}
void AppSettings::setStyleNetwork(const QString& value) {
    writeString(SettingKey::styleNetwork, value);
}
QString AppSettings::styleCPUTemp() const {
    return readString(SettingKey::styleCPUTemp);
}
void AppSettings::setStyleCPUTemp(const QString& value) {
    writeString(SettingKey::styleCPUTemp, value);
}
QString AppSettings::styleGPUTemp() const {
    return readString(SettingKey::styleGPUTemp);
}
void AppSettings::setStyleGPUTemp(const QString& value) {
    writeString(SettingKey::styleGPUTemp, value);
}
QString AppSettings::styleFan() const {
    return readString(SettingKey::styleFan);
}
void AppSettings::setStyleFan(const QString& value) {
    writeString(SettingKey::styleFan, value);
}
QString AppSettings::cpuColorHex() const {
    return readString(SettingKey::cpuColorHex);
}
void AppSettings::setCpuColorHex(const QString& value) {
    writeString(SettingKey::cpuColorHex, value);
}
QString AppSettings::memoryColorHex() const {
    return readString(SettingKey::memoryColorHex);
}
void AppSettings::setMemoryColorHex(const QString& value) {
    writeString(SettingKey::memoryColorHex, value);
}
QString AppSettings::diskColorHex() const {
    return readString(SettingKey::diskColorHex);
}
void AppSettings::setDiskColorHex(const QString& value) {
    writeString(SettingKey::diskColorHex, value);
}
QString AppSettings::networkColorHex() const {
    return readString(SettingKey::networkColorHex);
}
void AppSettings::setNetworkColorHex(const QString& value) {
    writeString(SettingKey::networkColorHex, value);
}
QString AppSettings::temperatureColorHex() const {
    return readString(SettingKey::temperatureColorHex);
}
void AppSettings::setTemperatureColorHex(const QString& value) {
    writeString(SettingKey::temperatureColorHex, value);
}
QString AppSettings::fanColorHex() const {
    return readString(SettingKey::fanColorHex);
}
void AppSettings::setFanColorHex(const QString& value) {
    writeString(SettingKey::fanColorHex, value);
}
bool AppSettings::alertCPUTemp() const {
    return readBool(SettingKey::alertCPUTemp);
}
void AppSettings::setAlertCPUTemp(bool value) {
    writeBool(SettingKey::alertCPUTemp, value);
}
double AppSettings::alertCPUTempLimit() const {
    return readDouble(SettingKey::alertCPUTempLimit);
}
void AppSettings::setAlertCPUTempLimit(double value) {
    writeDouble(SettingKey::alertCPUTempLimit, value);
}
double AppSettings::alertCPUTempSeconds() const {
    return readDouble(SettingKey::alertCPUTempSeconds);
}
void AppSettings::setAlertCPUTempSeconds(double value) {
    writeDouble(SettingKey::alertCPUTempSeconds, value);
}
bool AppSettings::alertCPU() const {
    return readBool(SettingKey::alertCPU);
}
void AppSettings::setAlertCPU(bool value) {
    writeBool(SettingKey::alertCPU, value);
}
double AppSettings::alertCPULimit() const {
    return readDouble(SettingKey::alertCPULimit);
}
void AppSettings::setAlertCPULimit(double value) {
    writeDouble(SettingKey::alertCPULimit, value);
}
double AppSettings::alertCPUSeconds() const {
    return readDouble(SettingKey::alertCPUSeconds);
}
void AppSettings::setAlertCPUSeconds(double value) {
    writeDouble(SettingKey::alertCPUSeconds, value);
}
bool AppSettings::alertMemory() const {
    return readBool(SettingKey::alertMemory);
}
void AppSettings::setAlertMemory(bool value) {
    writeBool(SettingKey::alertMemory, value);
}
double AppSettings::alertMemorySeconds() const {
    return readDouble(SettingKey::alertMemorySeconds);
}
void AppSettings::setAlertMemorySeconds(double value) {
    writeDouble(SettingKey::alertMemorySeconds, value);
}
bool AppSettings::alertDisk() const {
    return readBool(SettingKey::alertDisk);
}
void AppSettings::setAlertDisk(bool value) {
    writeBool(SettingKey::alertDisk, value);
}
double AppSettings::alertDiskLimit() const {
    return readDouble(SettingKey::alertDiskLimit);
}
void AppSettings::setAlertDiskLimit(double value) {
    writeDouble(SettingKey::alertDiskLimit, value);
}
double AppSettings::alertDiskSeconds() const {
    return readDouble(SettingKey::alertDiskSeconds);
}
void AppSettings::setAlertDiskSeconds(double value) {
    writeDouble(SettingKey::alertDiskSeconds, value);
}
