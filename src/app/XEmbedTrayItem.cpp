#include "XEmbedTrayItem.h"

#include "views/menubar/TrayIconComposer.h"

#include <QIconEngine>
#include <QPainter>

namespace {

// One composer for every item: it keeps its fonts and text measurements between redraws.
QImage compose(const ButtonModel& model, int side, qreal ratio = 1.0) {
    static const TrayIconComposer composer;
    return composer.compose(model, side, ratio);
}

class ButtonModelIconEngine : public QIconEngine {
public:
    explicit ButtonModelIconEngine(ButtonModel model) : model(std::move(model)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode, QIcon::State) override {
        const int side = std::min(rect.width(), rect.height());
        const qreal ratio = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
        const QImage image = compose(model, side, ratio);
        painter->drawImage(QRect(rect.topLeft(), QSize(side, side)), image);
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode, QIcon::State) override {
        return QPixmap::fromImage(
            compose(model, std::max(1, std::min(size.width(), size.height()))));
    }
    QPixmap scaledPixmap(const QSize& size, QIcon::Mode, QIcon::State, qreal scale) override {
        QPixmap result = QPixmap::fromImage(
            compose(model, std::max(1, std::min(size.width(), size.height())), scale));
        return result;
    }
    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override {
        return {QSize(16, 16), QSize(22, 22), QSize(24, 24),
                QSize(32, 32), QSize(44, 44), QSize(64, 64)};
    }
    QIconEngine* clone() const override { return new ButtonModelIconEngine(model); }

private:
    ButtonModel model;
};

} // namespace

XEmbedTrayItem::XEmbedTrayItem(QObject* parent) : TrayItem(parent) {
    connect(&icon, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason r) {
        if (r == QSystemTrayIcon::Trigger || r == QSystemTrayIcon::DoubleClick)
            emit activated();
    });
}

XEmbedTrayItem::~XEmbedTrayItem() {
    icon.hide();
}

void XEmbedTrayItem::setModel(const ButtonModel& model, bool textBesideIcon) {
    if (!takeModel(model, textBesideIcon))
        return;
    icon.setIcon(QIcon(new ButtonModelIconEngine(model)));
    toolTip = model.toolTip;
    showToolTip();
    if (!icon.isVisible())
        icon.show();
}

void XEmbedTrayItem::setSymbol(const QIcon& symbol, const QString& text) {
    icon.setIcon(symbol);
    toolTip = text;
    showToolTip();
    if (!icon.isVisible())
        icon.show();
}

void XEmbedTrayItem::setPopoverOpen(bool open) {
    popoverOpen = open;
    showToolTip();
}

void XEmbedTrayItem::showToolTip() {
    const QString shown = popoverOpen ? QString() : toolTip;
    if (icon.toolTip() != shown)
        icon.setToolTip(shown);
}

void XEmbedTrayItem::setMenu(QMenu* menu) {
    icon.setContextMenu(menu);
}
