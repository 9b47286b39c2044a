#include "app/VorluneApp.h"
#include "app/linux/SingleInstance.h"
#include "bar/BarMode.h"
#include "monitors/linux/IgnoreSigpipe.h"
#include "monitors/linux/QuitOnSignal.h"

#include <QApplication>

#include <string_view>

int main(int argc, char** argv) {
    // Popovers place themselves under their tray item, which a Wayland client
    // cannot do: run on XWayland unless the user chose a platform, and on Wayland
    // itself (the compositor placing popovers) when there is no XWayland.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") &&
        !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "xcb;wayland");
    // Qt waits for the X server after each shared-memory paint before it may reuse the
    // segment: a round trip, and a wake-up, per tray picture per tick. Our pictures are
    // a few kilobytes, cheaper sent over the socket than synchronised.
    if (!qEnvironmentVariableIsSet("QT_XCB_NO_MITSHM"))
        qputenv("QT_XCB_NO_MITSHM", "1");
    ignoreSigpipe();
    // A bar's text module: no display, no tray, no QApplication.
    for (int i = 1; i < argc; ++i)
        if (std::string_view(argv[i]) == "--bar")
            return runBarMode(argc, argv);

    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Vorlune"));
    // The light and dark palettes are made for Fusion.
    QApplication::setStyle(QStringLiteral("Fusion"));
    QApplication::setQuitOnLastWindowClosed(false);

    SingleInstance instance;
    if (!instance.claim())
        return 0;

    QuitOnSignal quitOnSignal;
    VorluneApp vorlune;
    QObject::connect(&instance, &SingleInstance::showRequested, &vorlune,
                     &VorluneApp::showMainPopoverFromOutside);
    vorlune.start();
    return QApplication::exec();
}
