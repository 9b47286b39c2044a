#include "TrayItems.h"

#include "XEmbedTrayItem.h"
#include "linux/StatusNotifierItem.h"

#include <QCoreApplication>

std::unique_ptr<TrayItem> makeTrayItem(std::optional<SensorType> type) {
    if (!StatusNotifierItem::watcherAvailable())
        return std::make_unique<XEmbedTrayItem>();
    QString name = QStringLiteral("Vorlune");
    if (type) {
        const std::string_view raw = rawValue(*type);
        name = QString::fromUtf8(raw.data(), qsizetype(raw.size()));
    }
    return std::make_unique<StatusNotifierItem>(trayItemId(type), trayItemTitle(type), name);
}

std::unique_ptr<QMenu> makeTrayMenu(std::optional<SensorType> type,
                                    const std::function<void()>& showOwn,
                                    const std::function<void()>& openSettings) {
    auto menu = std::make_unique<QMenu>();
    QString own = QStringLiteral("Show All Readings");
    if (type) {
        const std::string_view raw = rawValue(*type);
        own = QStringLiteral("Show %1 Details")
                  .arg(QString::fromUtf8(raw.data(), qsizetype(raw.size())));
    }
    QObject::connect(menu->addAction(own), &QAction::triggered, menu.get(), showOwn);
    QObject::connect(menu->addAction(QStringLiteral("Settings\u2026")), &QAction::triggered,
                     menu.get(), openSettings);
    menu->addSeparator();
    QObject::connect(menu->addAction(QStringLiteral("Quit Vorlune")), &QAction::triggered,
                     menu.get(), [] { QCoreApplication::quit(); });
    return menu;
}
