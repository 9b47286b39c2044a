#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QString>
#include <cstdint>
#include <filesystem>

// Tells when the settings file differs from the state last acknowledged, so
// another process's edits are noticed while the program's own writes are not.
// Editors and QSettings replace the file by renaming, which drops a watch on
// the file itself; the folder is watched too and the file watch renewed.
class SettingsFileWatcher : public QObject {
    Q_OBJECT
public:
    SettingsFileWatcher(const QString& filePath, QObject* parent);

    /// Whether the file (size, modification time, presence) changed since acknowledge().
    bool hasChanged() const;
    /// Takes the file as it is now as the known state.
    void acknowledge();

signals:
    /// The file may have changed; hasChanged() tells whether it really did.
    void touched();

private:
    struct Stamp {
        bool exists = false;
        std::uintmax_t size = 0;
        std::filesystem::file_time_type modified{};

        bool operator==(const Stamp&) const = default;
    };

    Stamp currentStamp() const;
    void renewWatches();

    std::filesystem::path path_;
    QFileSystemWatcher watcher_;
    Stamp known_;
};
