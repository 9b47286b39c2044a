#pragma once

#include <QByteArray>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <map>
#include <string>

inline void writeTextFile(const QString& path, const QByteArray& contents) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate)) << path.toStdString();
    file.write(contents);
}

inline QByteArray readTextFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

struct ProbeResult {
    int exitCode = -1;
    std::map<std::string, std::string> values;
};

// Runs the settings probe, a separate process with its own QSettings cache.
inline ProbeResult
runProbe(const QStringList& arguments,
         const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment()) {
    QProcess probe;
    probe.setProcessEnvironment(environment);
    probe.start(QStringLiteral(VORLUNE_SETTINGS_PROBE), arguments);
    ProbeResult result;
    if (!probe.waitForFinished(30000) || probe.exitStatus() != QProcess::NormalExit)
        return result;
    result.exitCode = probe.exitCode();
    for (const QByteArray& line : probe.readAllStandardOutput().split('\n')) {
        const qsizetype equals = line.indexOf('=');
        if (equals > 0)
            result.values[line.left(equals).toStdString()] = line.mid(equals + 1).toStdString();
    }
    return result;
}

// A message bus of the test's own, so the desktop's real portal never answers.
class PrivateBus {
public:
    /// Empty when dbus-daemon is missing or did not start.
    QString start() {
        const QString daemon = QStandardPaths::findExecutable(QStringLiteral("dbus-daemon"));
        if (daemon.isEmpty() || !dir_.isValid())
            return {};
        const QString config = dir_.filePath(QStringLiteral("bus.conf"));
        writeTextFile(config,
                      "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration "
                      "1.0//EN\" \"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
                      "<busconfig><type>session</type><listen>unix:dir=" +
                          dir_.path().toUtf8() +
                          "</listen><auth>EXTERNAL</auth><policy context=\"default\">"
                          "<allow send_destination=\"*\" eavesdrop=\"true\"/>"
                          "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>\n");
        daemon_.start(daemon, {"--config-file=" + config, "--nofork", "--print-address=1"});
        if (!daemon_.waitForStarted(10000))
            return {};
        while (!daemon_.canReadLine())
            if (!daemon_.waitForReadyRead(10000))
                return {};
        address_ = QString::fromUtf8(daemon_.readLine().trimmed());
        return address_;
    }

    QString address() const { return address_; }

    ~PrivateBus() {
        if (daemon_.state() != QProcess::NotRunning) {
            daemon_.terminate();
            daemon_.waitForFinished(5000);
        }
    }

private:
    QTemporaryDir dir_;
    QProcess daemon_;
    QString address_;
};

// The stand-in desktop portal, a child process serving on a private bus.
class FakePortal {
public:
    bool start(const QString& busAddress, unsigned colorScheme) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), busAddress);
        process_.setProcessEnvironment(environment);
        process_.start(QStringLiteral(VORLUNE_FAKE_PORTAL), {QString::number(colorScheme)});
        if (!process_.waitForStarted(10000))
            return false;
        while (!process_.canReadLine())
            if (!process_.waitForReadyRead(10000))
                return false;
        return process_.readLine().trimmed() == "ready";
    }

    /// Changes the scheme and emits SettingChanged.
    void setColorScheme(unsigned colorScheme) {
        process_.write("set " + QByteArray::number(colorScheme) + "\n");
        process_.waitForBytesWritten(5000);
    }

    ~FakePortal() {
        if (process_.state() != QProcess::NotRunning) {
            process_.closeWriteChannel();
            if (!process_.waitForFinished(5000))
                process_.kill();
        }
    }

private:
    QProcess process_;
};
