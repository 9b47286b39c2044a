// A bare tray process: one static icon and the helper run every two seconds,
// the least any tray monitor on this desktop pays. Usage: tray_floor <smc_helper>
#include "HelperTicker.h"

#include <QApplication>
#include <QIcon>
#include <QPixmap>
#include <QSystemTrayIcon>

#include <cstdio>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s <path to smc_helper>\n", argv[0]);
        return 2;
    }
    QApplication::setQuitOnLastWindowClosed(false);

    QPixmap picture(22, 22);
    picture.fill(QColor(0x30, 0x80, 0xd0));
    QSystemTrayIcon icon{QIcon(picture)};
    icon.show();

    HelperTicker ticker(QString::fromLocal8Bit(argv[1]), 2000);
    ticker.start();
    return QApplication::exec();
}
