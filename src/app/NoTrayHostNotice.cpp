#include "NoTrayHostNotice.h"

#include <QLabel>
#include <QVBoxLayout>

NoTrayHostNotice::NoTrayHostNotice(QWidget* parent) : QWidget(parent, Qt::Window) {
    setWindowTitle(QStringLiteral("Vorlune"));
    auto* layout = new QVBoxLayout(this);
    auto* text = new QLabel(
        QStringLiteral("Vorlune lives in the system tray, and this desktop shows none.\n\n%1\n\n"
                       "Vorlune keeps running and its icons appear as soon as a tray does.")
            .arg(adviceFor(qEnvironmentVariable("XDG_CURRENT_DESKTOP"))));
    text->setWordWrap(true);
    layout->addWidget(text);
    setMinimumWidth(380);
}

QString NoTrayHostNotice::adviceFor(const QString& currentDesktop) {
    const QString desktop = currentDesktop.toLower();
    if (desktop.contains(QLatin1String("gnome")) || desktop.contains(QLatin1String("unity")))
        return QStringLiteral(
            "On GNOME, install and enable the AppIndicator extension "
            "(Debian package gnome-shell-extension-appindicator), then log in again.");
    if (desktop.contains(QLatin1String("xfce")))
        return QStringLiteral("On Xfce, add the \"Status Tray Plugin\" to a panel "
                              "(Panel > Add New Items).");
    if (desktop.contains(QLatin1String("kde")))
        return QStringLiteral("On Plasma, add the \"System Tray\" widget to a panel.");
    if (desktop.contains(QLatin1String("lxqt")))
        return QStringLiteral("On LXQt, add the \"Status Notifier\" widget to a panel.");
    if (desktop.contains(QLatin1String("mate")))
        return QStringLiteral("On MATE, add the \"Notification Area\" applet to a panel.");
    return QStringLiteral("Add a system tray (notification area) to your panel, or start a "
                          "tray such as tint2, stalonetray or trayer.");
}
