#include "TrayTextSide.h"

#include <QStringList>

bool valueTextBesideIcon(TrayTextPlacement placement, const QString& currentDesktop) {
    switch (placement) {
    case TrayTextPlacement::besideIcon:
        return true;
    case TrayTextPlacement::insideIcon:
        return false;
    case TrayTextPlacement::automatic:
        break;
    }
    static const QStringList labelDrawingDesktops{QStringLiteral("GNOME"), QStringLiteral("ubuntu"),
                                                  QStringLiteral("Unity"), QStringLiteral("MATE")};
    const QStringList desktops = currentDesktop.split(u':', Qt::SkipEmptyParts);
    for (const QString& desktop : desktops)
        for (const QString& drawing : labelDrawingDesktops)
            if (desktop.compare(drawing, Qt::CaseInsensitive) == 0)
                return true;
    return false;
}
