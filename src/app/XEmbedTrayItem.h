#pragma once

#include "TrayItem.h"

#include <QSystemTrayIcon>

/// A tray item for XEmbed hosts (tint2, trayer, stalonetray, i3bar), through Qt's tray
/// icon. These hosts draw icons only, so the text always goes inside the square.
class XEmbedTrayItem : public TrayItem {
    Q_OBJECT
public:
    explicit XEmbedTrayItem(QObject* parent = nullptr);
    ~XEmbedTrayItem() override;

    void setModel(const ButtonModel& model, bool textBesideIcon) override;
    void setSymbol(const QIcon& symbol, const QString& toolTip) override;
    void setMenu(QMenu* menu) override;
    QRect anchor() const override { return icon.geometry(); }
    bool isVisible() const override { return icon.isVisible(); }
    void setPopoverOpen(bool open) override;

private:
    void showToolTip();

    QSystemTrayIcon icon;
    QString toolTip;
    bool popoverOpen = false;
};
