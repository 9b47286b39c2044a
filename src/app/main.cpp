#include "monitors/SystemMonitor.h"

#include <QCoreApplication>

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    SystemMonitor monitor;
    return app.exec();
}
