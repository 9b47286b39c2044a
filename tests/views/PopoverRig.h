#pragma once

#include "monitors/SystemMonitor.h"
#include "settings/AppSettings.h"

#include <QStringList>
#include <QTemporaryDir>

class QLabel;
class QWidget;

// A real monitor that never samples (the test publishes its readings), with no helper
// installed, and a real settings store in a scratch file that no desktop answers for.
struct PopoverRig {
    PopoverRig();

    QTemporaryDir dir;
    AppSettings settings;
    SystemMonitor monitor;
};

/// Runs what the views queued after a change notice.
void settle();

/// A sample with every reading known: see PopoverRig.cpp for the values.
SystemSample knownSample();

/// The label called `name` below `root`; fails the test when there is none.
QLabel* labelNamed(const QWidget* root, const QString& name);
/// The widget called `name` below `root`, or nullptr.
QWidget* widgetNamed(const QWidget* root, const QString& name);

/// The texts of every label and button below `root` that shows when `root` does.
QStringList shownTexts(const QWidget* root);

/// Sends a left click to the middle of `widget`.
void click(QWidget* widget);
