#include "BarMode.h"

#include "BarLine.h"
#include "monitors/SystemMonitor.h"
#include "monitors/linux/QuitOnSignal.h"
#include "views/menubar/SampledReadings.h"

#include <QCoreApplication>
#include <QStringList>

#include <cstdio>

namespace {

const char* const usage =
    "usage: vorlune --bar waybar|i3bar|plain [--items cpu,memory,network,cputemp,...]\n";

// A reader that went away (waybar restarting, `| head -1`) ends the run, not an error.
bool writeLine(const QString& line) {
    const QByteArray bytes = line.toUtf8() + '\n';
    return std::fwrite(bytes.constData(), 1, std::size_t(bytes.size()), stdout) ==
               std::size_t(bytes.size()) &&
           std::fflush(stdout) == 0;
}

} // namespace

int runBarMode(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const qsizetype bar = arguments.indexOf(QStringLiteral("--bar"));
    const qsizetype items = arguments.indexOf(QStringLiteral("--items"));
    const auto format = barFormatNamed(arguments.value(bar + 1));
    const auto kinds = barItemsNamed(items < 0 ? QStringLiteral("cpu,memory,network,cputemp")
                                               : arguments.value(items + 1));
    if (!format || !kinds) {
        std::fputs(usage, stderr);
        return 2;
    }
    QuitOnSignal quitOnSignal;
    SystemMonitor monitor;
    if (const QString preamble = barPreamble(*format); !preamble.isEmpty() && !writeLine(preamble))
        return 0;
    QObject::connect(&monitor, &SystemMonitor::sampled, &application, [&] {
        if (!writeLine(barLine(*format, *kinds, sampledReadings(monitor))))
            QCoreApplication::quit();
    });
    QCoreApplication::exec();
    return 0;
}
