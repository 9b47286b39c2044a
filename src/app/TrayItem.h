#pragma once

#include "views/menubar/ButtonModel.h"

#include <QObject>
#include <QRect>
#include <QSystemTrayIcon>

#include <memory>

/// One tray item drawn from a button model. Tray hosts give every item a square
/// slot, so the model is composed into a square icon at whatever size the host asks.
class TrayItem : public QObject {
    Q_OBJECT
public:
    explicit TrayItem(QObject* parent = nullptr);
    ~TrayItem() override;

    /// Shows `model`; a model equal to the one shown is not sent to the host again.
    void setModel(const ButtonModel& model);
    const ButtonModel& model() const { return model_; }
    /// How many pictures were sent to the host.
    int redrawCount() const { return redraws; }

    /// The item's place on screen, when the host tells (XEmbed does, StatusNotifierItem does not).
    QRect geometry() const { return icon.geometry(); }
    bool isVisible() const { return icon.isVisible(); }

signals:
    void clicked();

private:
    QSystemTrayIcon icon;
    ButtonModel model_;
    bool hasModel = false;
    int redraws = 0;
};
