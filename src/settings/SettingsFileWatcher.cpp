#include "SettingsFileWatcher.h"

#include <QFileInfo>

SettingsFileWatcher::SettingsFileWatcher(const QString& filePath, QObject* parent)
    : QObject(parent), path_(filePath.toStdString()) {
    known_ = currentStamp();
    renewWatches();
    auto onEvent = [this] {
        renewWatches();
        emit touched();
    };
    connect(&watcher_, &QFileSystemWatcher::fileChanged, this, onEvent);
    connect(&watcher_, &QFileSystemWatcher::directoryChanged, this, onEvent);
}

bool SettingsFileWatcher::hasChanged() const {
    return currentStamp() != known_;
}

void SettingsFileWatcher::acknowledge() {
    known_ = currentStamp();
    renewWatches();
}

SettingsFileWatcher::Stamp SettingsFileWatcher::currentStamp() const {
    std::error_code error;
    Stamp stamp;
    if (!std::filesystem::is_regular_file(path_, error))
        return stamp;
    stamp.exists = true;
    stamp.size = std::filesystem::file_size(path_, error);
    stamp.modified = std::filesystem::last_write_time(path_, error);
    return stamp;
}

void SettingsFileWatcher::renewWatches() {
    const QString file = QString::fromStdString(path_.string());
    const QString folder = QFileInfo(file).absolutePath();
    if (!watcher_.directories().contains(folder) && QFileInfo(folder).isDir())
        watcher_.addPath(folder);
    if (!watcher_.files().contains(file) && QFileInfo(file).isFile())
        watcher_.addPath(file);
}
