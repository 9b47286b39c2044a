#include "PopoverRig.h"

#include "settings/SystemColorScheme.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QLabel>
#include <QMouseEvent>
#include <gtest/gtest.h>

namespace {

// A thermal monitor whose helper is never installed, so the fan section offers its setup.
SamplingMonitors monitorsWithoutInstalledHelper(const QTemporaryDir& dir) {
    SamplingMonitors monitors;
    monitors.thermalMonitor = std::make_unique<ThermalMonitor>(
        dir.filePath(QStringLiteral("vorlune_smc_helper")).toStdString(), "/bin/false");
    return monitors;
}

} // namespace

PopoverRig::PopoverRig()
    : settings(dir.filePath(QStringLiteral("vorlune.conf")),
               std::make_unique<SystemColorScheme>(QString())),
      monitor(monitorsWithoutInstalledHelper(dir), false) {}

void settle() {
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

SystemSample knownSample() {
    SystemSample sample;
    sample.cpuUsage = 0.425;
    sample.coreUsages = {0.1, 0.5, 0.9, 0.3};
    sample.memory = {6.3, 16.0, 4.0, 2.0, 1.5, 0.8};
    sample.disk = {120.4, 500.0};
    sample.network = {1572864.0, 3072.0};
    sample.thermal.cpuTemp = 65.7;
    sample.thermal.gpuTemp = 58.2;
    sample.thermal.sensors = {{"tc0", "CPU Die", 66.0},
                              {"gpu0", "GPU Edge", 58.0},
                              {"nvme0", "SSD", 40.0},
                              {"tc1", "CPU Core 0", 64.0}};
    sample.thermal.fans = {{0, 2400.7, 1200.0, 6000.0, 2400.0}, {1, 0.0, 1200.0, 6000.0, 0.0}};
    return sample;
}

QWidget* widgetNamed(const QWidget* root, const QString& name) {
    return root->findChild<QWidget*>(name);
}

QLabel* labelNamed(const QWidget* root, const QString& name) {
    auto* label = root->findChild<QLabel*>(name);
    EXPECT_NE(label, nullptr) << "no label " << name.toStdString();
    return label;
}

QStringList shownTexts(const QWidget* root) {
    QStringList texts;
    for (const QWidget* widget : root->findChildren<QWidget*>()) {
        if (!widget->isVisibleTo(root))
            continue;
        if (const auto* label = qobject_cast<const QLabel*>(widget))
            texts << label->text();
        else if (const auto* button = qobject_cast<const QAbstractButton*>(widget))
            texts << button->text();
    }
    return texts;
}

void click(QWidget* widget) {
    const QPointF local = QRectF(widget->rect()).center();
    const QPointF global = widget->mapToGlobal(local);
    QMouseEvent press(QEvent::MouseButtonPress, local, global, Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &press);
    QMouseEvent release(QEvent::MouseButtonRelease, local, global, Qt::LeftButton, Qt::NoButton,
                        Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &release);
}
