#pragma once

#include "StdinLines.h"
#include "app/VorluneApp.h"

#include <QObject>

/// The application as it runs for a user, on its own 2-second timer, with one line on
/// standard output per published sample:
///   sample t=<CLOCK_MONOTONIC s> temp=<°C> gpu=<°C> sensors=<n> fans=<n> items=<n>
///          fds=<n> threads=<n> children=<n>
/// Standard input takes "get <key>", "set <key> <value>" (answered "setting <key>=<value>")
/// and "quit"; its end quits as well.
class TimerRun : public QObject {
    Q_OBJECT
public:
    explicit TimerRun(const QString& settingsFile, QObject* parent = nullptr);

private:
    void reportSample();
    void answer(const std::string& line);

    VorluneApp app;
    StdinLines input;
};
