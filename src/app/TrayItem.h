#pragma once

#include "views/menubar/ButtonModel.h"

#include <QIcon>
#include <QObject>
#include <QRect>

class QMenu;

/// One item in the desktop's tray: the main symbol or one reading. Tray hosts speak one of
/// two protocols (XEmbed, StatusNotifierItem), and each protocol has its own item.
class TrayItem : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    /// Shows a reading. `textBesideIcon` asks for the value text in a label beside the icon
    /// where the host draws one; the icon then carries the graph or the kind's symbol.
    /// A model equal to the one shown sends nothing to the host.
    virtual void setModel(const ButtonModel& model, bool textBesideIcon) = 0;
    /// Shows a fixed symbol (the main item).
    virtual void setSymbol(const QIcon& symbol, const QString& toolTip) = 0;
    /// The menu a secondary click opens; the caller keeps it alive.
    virtual void setMenu(QMenu* menu) = 0;
    /// Where to open a popover: the item's rectangle, or the point of the last click when
    /// the host tells only that. Invalid when neither is known.
    virtual QRect anchor() const = 0;
    virtual bool isVisible() const = 0;
    /// While the item's popover is open its tooltip is not offered: it would cover the
    /// popover's top.
    virtual void setPopoverOpen(bool open) = 0;

    const ButtonModel& model() const { return model_; }
    /// How many pictures were sent to the host.
    int redrawCount() const { return redraws; }

signals:
    /// The item was clicked (or activated from the keyboard).
    void activated();

protected:
    /// Records `model`; false when it equals the one shown, which then needs no redraw.
    bool takeModel(const ButtonModel& model, bool textBesideIcon) {
        if (hasModel && model == model_ && textBesideIcon == besideShown)
            return false;
        model_ = model;
        besideShown = textBesideIcon;
        hasModel = true;
        ++redraws;
        return true;
    }

private:
    ButtonModel model_;
    bool hasModel = false;
    bool besideShown = false;
    int redraws = 0;
};
