#include "LaunchAtLogin.h"

#include "AutostartEntry.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

#include <filesystem>
#include <system_error>

LaunchAtLogin::LaunchAtLogin()
    : LaunchAtLogin(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation),
                    QCoreApplication::applicationFilePath()) {}

LaunchAtLogin::LaunchAtLogin(QString configDir, QString executablePath)
    : configDir(std::move(configDir)), executablePath(std::move(executablePath)) {}

QString LaunchAtLogin::entryPath() const {
    return configDir + QStringLiteral("/autostart/vorlune.desktop");
}

bool LaunchAtLogin::isEnabled() const {
    QFile entry(entryPath());
    if (!entry.open(QIODevice::ReadOnly))
        return false;
    const QByteArray text = entry.readAll();
    return AutostartEntry::launchesAtLogin(std::string_view(text.constData(), text.size()));
}

std::optional<QString> LaunchAtLogin::setEnabled(bool enabled) const {
    return enabled ? writeEntry() : removeEntry();
}

QString LaunchAtLogin::execCommand() const {
    const QString absolute = QFileInfo(executablePath).absoluteFilePath();
    const QString onPath = QStandardPaths::findExecutable(QStringLiteral("vorlune"));
    const QString running = QFileInfo(absolute).canonicalFilePath();
    if (!onPath.isEmpty() && !running.isEmpty() && QFileInfo(onPath).canonicalFilePath() == running)
        return QStringLiteral("vorlune");
    return AutostartEntry::execArgument(absolute);
}

std::optional<QString> LaunchAtLogin::writeEntry() const {
    const QString folder = QFileInfo(entryPath()).path();
    std::error_code error;
    std::filesystem::create_directories(folder.toStdString(), error);
    if (error)
        return QStringLiteral("Cannot create the folder %1: %2")
            .arg(folder, QString::fromStdString(error.message()));

    QSaveFile entry(entryPath());
    if (!entry.open(QIODevice::WriteOnly))
        return entry.errorString();
    entry.write(AutostartEntry::text(execCommand()).toUtf8());
    if (!entry.commit())
        return entry.errorString();
    return std::nullopt;
}

std::optional<QString> LaunchAtLogin::removeEntry() const {
    QFile entry(entryPath());
    const QFileInfo info(entryPath());
    if (!info.exists() && !info.isSymLink())
        return std::nullopt;
    if (!entry.remove())
        return entry.errorString();
    return std::nullopt;
}
