#include "AppSettings.h"

#include "AppearancePalette.h"
#include "SettingKey.h"
#include "SettingsFileWatcher.h"
#include "StoredValue.h"
#include "ThemeColors.h"

#include <QSettings>

namespace {

QString keyName(SettingKey key) {
    const std::string_view name = settingDefinition(key).name;
    return QString::fromLatin1(name.data(), qsizetype(name.size()));
}

QString defaultText(SettingKey key) {
    const std::string_view text = settingDefinition(key).defaultText;
    return QString::fromUtf8(text.data(), qsizetype(text.size()));
}

QString groupName() {
    return QString::fromLatin1(fanPercentagesGroup.data(), qsizetype(fanPercentagesGroup.size()));
}

QString fromStd(std::string_view text) {
    return QString::fromUtf8(text.data(), qsizetype(text.size()));
}

bool applicationPaletteLooksDark() {
    if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        return false;
    return QGuiApplication::palette().color(QPalette::Window).lightnessF() < 0.5;
}

} // namespace

AppSettings::AppSettings(QObject* parent)
    : AppSettings(std::make_unique<QSettings>(QSettings::NativeFormat, QSettings::UserScope,
                                              QStringLiteral("vorlune"), QStringLiteral("vorlune")),
                  std::make_unique<SystemColorScheme>(), parent) {}

AppSettings::AppSettings(const QString& filePath, QObject* parent)
    : AppSettings(filePath, std::make_unique<SystemColorScheme>(), parent) {}

AppSettings::AppSettings(const QString& filePath, std::unique_ptr<SystemColorScheme> systemScheme,
                         QObject* parent)
    : AppSettings(std::make_unique<QSettings>(filePath, QSettings::NativeFormat),
                  std::move(systemScheme), parent) {}

AppSettings::AppSettings(std::unique_ptr<QSettings> store,
                         std::unique_ptr<SystemColorScheme> systemScheme, QObject* parent)
    : QObject(parent), store_(std::move(store)) {
    systemScheme_ = systemScheme.release();
    systemScheme_->setParent(this);
    connect(systemScheme_, &SystemColorScheme::changed, this, &AppSettings::onSystemSchemeChanged);
    watcher_ = new SettingsFileWatcher(store_->fileName(), this);
    connect(watcher_, &SettingsFileWatcher::touched, this, &AppSettings::reloadIfChanged);
}

AppSettings::~AppSettings() {
    retryUnsavedWrites();
}

QString AppSettings::fileName() const {
    return store_->fileName();
}

// Reading

std::optional<QString> AppSettings::storedText(SettingKey key) const {
    const QVariant value = store_->value(keyName(key));
    // Anything but plain text (a list from an unquoted comma, an @Variant blob)
    // is not a value this program wrote.
    if (value.metaType().id() != QMetaType::QString)
        return std::nullopt;
    return value.toString();
}

bool AppSettings::readBool(SettingKey key) const {
    if (const auto text = storedText(key))
        if (const auto value = parseStoredBool(text->toStdString()))
            return *value;
    return *parseStoredBool(settingDefinition(key).defaultText);
}

double AppSettings::readDouble(SettingKey key) const {
    if (const auto text = storedText(key))
        if (const auto value = parseStoredDouble(text->toStdString()))
            return *value;
    return *parseStoredDouble(settingDefinition(key).defaultText);
}

QString AppSettings::readString(SettingKey key) const {
    return storedText(key).value_or(defaultText(key));
}

// Writing

void AppSettings::flush() {
    store_->sync();
    watcher_->acknowledge();
}

void AppSettings::writeText(SettingKey key, const QString& text) {
    store_->setValue(keyName(key), text);
    flush();
    // QSettings forgets a write whose sync failed (a directory where the file must
    // be, a full disk); keep it so it is written again once the file can be.
    // (A FormatError only says the file read was garbage; the write itself landed.)
    if (store_->status() == QSettings::AccessError)
        unsavedWrites_[keyName(key)] = text;
    else
        unsavedWrites_.clear();
    emit objectWillChange();
}

void AppSettings::retryUnsavedWrites() {
    if (unsavedWrites_.empty())
        return;
    for (const auto& [key, text] : unsavedWrites_)
        store_->setValue(key, text);
    flush();
    if (store_->status() != QSettings::AccessError)
        unsavedWrites_.clear();
}

void AppSettings::writeBool(SettingKey key, bool value) {
    writeText(key, fromStd(formatStoredBool(value)));
}

void AppSettings::writeDouble(SettingKey key, double value) {
    writeText(key, fromStd(formatStoredDouble(value)));
}

void AppSettings::writeString(SettingKey key, const QString& value) {
    writeText(key, value);
}

// Derived look-ups

PersistentStyle AppSettings::effectiveStyle(std::string_view sensorKey) const {
    static constexpr std::pair<std::string_view, SettingKey> styleKeys[] = {
        {"cpu", SettingKey::styleCPU},
        {"memory", SettingKey::styleMemory},
        {"disk", SettingKey::styleDisk},
        {"networkIn", SettingKey::styleNetworkIn},
        {"networkOut", SettingKey::styleNetworkOut},
        {"network", SettingKey::styleNetwork},
        {"cpuTemp", SettingKey::styleCPUTemp},
        {"gpuTemp", SettingKey::styleGPUTemp},
        {"fan", SettingKey::styleFan},
    };
    QString style;
    for (const auto& [name, key] : styleKeys)
        if (name == sensorKey)
            style = readString(key);
    if (const auto own = fromRawValue<PersistentStyle>(style.toStdString()))
        return *own;
    return persistentDisplayStyle();
}

bool AppSettings::isDarkAppearance() const {
    switch (appearanceMode()) {
    case AppearanceMode::light:
        return false;
    case AppearanceMode::dark:
        return true;
    case AppearanceMode::system:
        break;
    }
    if (const auto dark = systemScheme_->prefersDark())
        return *dark;
    return applicationPaletteLooksDark();
}

void AppSettings::applyTheme(ThemePreset preset) {
    const auto colours = themeColorHexes(preset, isDarkAppearance());
    setThemePreset(preset);
    setCpuColorHex(fromStd(colours[0]));
    setMemoryColorHex(fromStd(colours[1]));
    setDiskColorHex(fromStd(colours[2]));
    setNetworkColorHex(fromStd(colours[3]));
    setTemperatureColorHex(fromStd(colours[4]));
    setFanColorHex(fromStd(colours[5]));
    // Observers that redraw on the first notices have seen a mixed set; this
    // one comes after the whole set is stored.
    emit objectWillChange();
}

// Appearance

std::optional<QPalette> AppSettings::appearancePalette() const {
    switch (appearanceMode()) {
    case AppearanceMode::light:
        return ::appearancePalette(false);
    case AppearanceMode::dark:
        return ::appearancePalette(true);
    case AppearanceMode::system:
        break;
    }
    // A desktop theme (KDE's, qt6ct's) already styles the app; the portal's preference
    // only replaces a palette that disagrees with it, such as Qt's plain light default.
    const auto dark = systemScheme_->prefersDark();
    if (!dark || *dark == platformPaletteDark_.value_or(applicationPaletteLooksDark()))
        return std::nullopt;
    return ::appearancePalette(*dark);
}

void AppSettings::applyAppearance(QGuiApplication&) {
    if (!applicationAppearanceManaged_)
        platformPaletteDark_ = applicationPaletteLooksDark();
    applicationAppearanceManaged_ = true;
    // An empty palette hands the application back to the platform's own; a palette
    // that never was ours is left alone.
    const auto palette = appearancePalette();
    if (palette || ownPaletteSet_)
        QGuiApplication::setPalette(palette.value_or(QPalette()));
    ownPaletteSet_ = palette.has_value();
}

void AppSettings::onSystemSchemeChanged() {
    if (applicationAppearanceManaged_ && appearanceMode() == AppearanceMode::system)
        if (auto* application = qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
            applyAppearance(*application);
    emit objectWillChange();
}

// Fan percentages

std::map<long long, double> AppSettings::fanPercentages() const {
    std::map<long long, double> percentages;
    store_->beginGroup(groupName());
    for (const QString& name : store_->childKeys()) {
        const QVariant value = store_->value(name);
        if (value.metaType().id() != QMetaType::QString)
            continue;
        const auto id = parseStoredInteger(name.toStdString());
        const auto percent = parseStoredDouble(value.toString().toStdString());
        if (id && percent)
            percentages[*id] = *percent;
    }
    store_->endGroup();
    return percentages;
}

void AppSettings::setFanPercentages(const std::map<long long, double>& percentages) {
    store_->beginGroup(groupName());
    store_->remove(QString());
    for (const auto& [id, percent] : percentages)
        store_->setValue(QString::number(id), fromStd(formatStoredDouble(percent)));
    store_->endGroup();
    flush();
}

// External changes

bool AppSettings::reloadIfChanged() {
    retryUnsavedWrites();
    if (!watcher_->hasChanged())
        return false;
    store_->sync();
    watcher_->acknowledge();
    emit objectWillChange();
    return true;
}
