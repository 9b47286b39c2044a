#pragma once

#include "StatusNotifierTypes.h"
#include "app/TrayItem.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QPointer>

#include <functional>
#include <optional>
#include <vector>

class QMenu;

/// A tray item of its own on the session bus, for StatusNotifierItem hosts (KDE Plasma,
/// xfce4-panel, MATE, GNOME's AppIndicator extension, waybar). Unlike Qt's tray icon it
/// gives each item its own Id and Title, takes the click's position, opens a menu and can
/// carry a text label. Each item has a bus connection of its own, so that dropping it
/// removes exactly this item from the host.
class StatusNotifierItem : public TrayItem {
    Q_OBJECT
public:
    StatusNotifierItem(QString id, QString title, QString name, QObject* parent = nullptr);
    ~StatusNotifierItem() override;

    /// Whether a StatusNotifierWatcher (a host's registry) is on the session bus.
    static bool watcherAvailable();

    void setModel(const ButtonModel& model, bool textBesideIcon) override;
    void setSymbol(const QIcon& symbol, const QString& toolTip) override;
    void setMenu(QMenu* menu) override;
    QRect anchor() const override;
    bool isVisible() const override { return registered; }
    void setPopoverOpen(bool open) override;

    QString id() const { return id_; }
    /// Title and tooltip are empty while the popover is open (hosts show the title when
    /// the tooltip is empty).
    QString title() const { return popoverOpen ? QString() : title_; }
    SniPixmaps pixmaps() const { return pixmaps_; }
    /// What hosts are given: nothing while the popover is open.
    SniToolTip sniToolTip() const { return popoverOpen ? SniToolTip{} : toolTip_; }
    QString label() const { return label_; }
    QString labelGuide() const { return labelGuide_; }
    /// Picture bytes a host fetches after each new icon, summed over the item's life.
    qint64 pictureBytesOffered() const { return bytesOffered; }

    void activateAt(QPoint position);
    void openMenuAt(QPoint position);

    /// The scales pictures are offered at, as squares of 22 logical pixels: 22 is the icon
    /// size xfce4-panel, MATE and Plasma draw at on a normal panel, and a host scales the
    /// nearest picture. A 2x screen adds the 44-pixel one. Every picture is sent again on
    /// each change, so fewer sizes are less to send every tick.
    static std::vector<qreal> pictureScales();

private:
    void registerWithWatcher();
    void showPictures(const std::function<QImage(qreal scale)>& draw);
    void setToolTip(const QString& text);
    void setLabel(const QString& label, const QString& guide);

    QString id_;
    QString title_;
    QString name_;
    QString connectionName;
    std::optional<QDBusConnection> connection;
    QDBusServiceWatcher watcherWatch;
    class StatusNotifierItemAdaptor* adaptor = nullptr;
    QPointer<QMenu> menu_;
    SniPixmaps pixmaps_;
    SniToolTip toolTip_;
    QString label_;
    QString labelGuide_;
    std::optional<QPoint> lastClick;
    bool registered = false;
    bool popoverOpen = false;
    qint64 bytesOffered = 0;
};
