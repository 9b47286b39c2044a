#include "StatusNotifierItem.h"

#include "StatusNotifierItemAdaptor.h"
#include "tray/Symbols.h"
#include "views/menubar/MenuBarValueText.h"
#include "views/menubar/TrayIconComposer.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QGuiApplication>
#include <QMenu>
#include <QScreen>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <chrono>

namespace {

const QString watcherService = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString objectPath = QStringLiteral("/StatusNotifierItem");
// Pictures are squares of this many logical pixels.
constexpr int side = 22;
constexpr std::chrono::milliseconds registrationGap{400};

const TrayIconComposer& composer() {
    static const TrayIconComposer shared;
    return shared;
}

QColor valueColour(const ButtonModel& model) {
    for (const TitleRun& run : model.title)
        if (run.kind == TitleRun::Kind::value)
            return run.colour;
    return model.image ? model.image->colour : QColor(Qt::white);
}

} // namespace

StatusNotifierItem::StatusNotifierItem(QString id, QString title, QString name, QObject* parent)
    : TrayItem(parent), id_(std::move(id)), title_(std::move(title)), name_(std::move(name)) {
    registerStatusNotifierTypes();
    static std::atomic<int> serial{0};
    connectionName = QStringLiteral("vorlune-tray-%1").arg(++serial);
    connection = QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName);
    adaptor = new StatusNotifierItemAdaptor(this);
    toolTip_.title = name_;
    if (!connection->isConnected() ||
        !connection->registerObject(objectPath, this, QDBusConnection::ExportAdaptors)) {
        qWarning("Vorlune: the tray item %s could not be put on the session bus", qPrintable(id_));
        return;
    }
    // A panel that restarts brings a new watcher with an empty list.
    watcherWatch.setConnection(*connection);
    watcherWatch.setWatchMode(QDBusServiceWatcher::WatchForRegistration);
    watcherWatch.addWatchedService(watcherService);
    connect(&watcherWatch, &QDBusServiceWatcher::serviceRegistered, this,
            &StatusNotifierItem::registerWithWatcher);
    // xfce4-panel 4.18 writes the list of item names it has seen to xfconf whole on each
    // new one, and an answer to an earlier write can put back a list without the items
    // that came since: those are never drawn. Items that register apart never overlap.
    using Clock = std::chrono::steady_clock;
    static Clock::time_point nextRegistration;
    const Clock::time_point now = Clock::now(), at = std::max(now, nextRegistration);
    nextRegistration = at + registrationGap;
    QTimer::singleShot(std::chrono::duration_cast<std::chrono::milliseconds>(at - now), this,
                       &StatusNotifierItem::registerWithWatcher);
}

StatusNotifierItem::~StatusNotifierItem() {
    if (menu_)
        menu_->close();
    // Dropping the connection takes its bus name away, and with it the host's item.
    if (connection)
        connection->unregisterObject(objectPath);
    connection.reset();
    QDBusConnection::disconnectFromBus(connectionName);
}

bool StatusNotifierItem::watcherAvailable() {
    const QDBusConnection bus = QDBusConnection::sessionBus();
    return bus.isConnected() && bus.interface() &&
           bus.interface()->isServiceRegistered(watcherService);
}

void StatusNotifierItem::registerWithWatcher() {
    QDBusMessage call = QDBusMessage::createMethodCall(
        watcherService, QStringLiteral("/StatusNotifierWatcher"), watcherService,
        QStringLiteral("RegisterStatusNotifierItem"));
    call << connection->baseService();
    registered = connection->send(call);
}

std::vector<qreal> StatusNotifierItem::pictureScales() {
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (screen && screen->devicePixelRatio() > 1.0)
        return {1.0, 2.0};
    return {1.0};
}

void StatusNotifierItem::showPictures(const std::function<QImage(qreal scale)>& draw) {
    SniPixmaps next;
    for (const qreal scale : pictureScales())
        next.push_back(sniPixmap(draw(scale)));
    if (next == pixmaps_)
        return;
    pixmaps_ = std::move(next);
    for (const SniPixmap& pixmap : pixmaps_)
        bytesOffered += pixmap.pixels.size();
    emit adaptor->NewIcon();
}

void StatusNotifierItem::setToolTip(const QString& text) {
    if (toolTip_.text == text)
        return;
    toolTip_.text = text;
    emit adaptor->NewToolTip();
}

// A tooltip over the popover hides its first line: hosts re-ask on these signals and
// show nothing when both are empty (an empty tooltip alone shows the title).
void StatusNotifierItem::setPopoverOpen(bool open) {
    if (popoverOpen == open)
        return;
    popoverOpen = open;
    emit adaptor->NewTitle();
    emit adaptor->NewToolTip();
}

void StatusNotifierItem::setLabel(const QString& label, const QString& guide) {
    if (label_ == label && labelGuide_ == guide)
        return;
    label_ = label;
    labelGuide_ = guide;
    emit adaptor->XAyatanaNewLabel(label_, labelGuide_);
}

void StatusNotifierItem::setModel(const ButtonModel& model, bool textBesideIcon) {
    if (!takeModel(model, textBesideIcon))
        return;
    // The title names the item; the text is its value, and what the tooltip adds under
    // its first line (the CPU's busiest core).
    const qsizetype more = model.toolTip.indexOf(u'\n');
    setToolTip(more < 0 ? model.valueText : model.valueText + model.toolTip.mid(more));
    if (!textBesideIcon) {
        setLabel({}, {});
        showPictures([&model](qreal scale) { return composer().compose(model, side, scale); });
        return;
    }
    // The label carries the value; the icon carries the graph, or the kind's symbol.
    setLabel(model.valueText, widestValueText(model.type));
    if (model.image) {
        ButtonModel graph = model;
        graph.style = PersistentStyle::graphOnly;
        graph.title.clear();
        showPictures([&graph](qreal scale) { return composer().compose(graph, side, scale); });
        return;
    }
    const QString symbol = sensorSymbolName(model.type);
    const QColor colour = valueColour(model);
    showPictures([&](qreal scale) {
        return outlinedSymbolPixmap(symbol.toStdString(), colour, side, scale).toImage();
    });
}

void StatusNotifierItem::setSymbol(const QIcon& symbol, const QString& toolTip) {
    showPictures(
        [&symbol](qreal scale) { return symbol.pixmap(QSize(side, side), scale).toImage(); });
    setToolTip(toolTip);
}

QRect StatusNotifierItem::anchor() const {
    return lastClick ? QRect(*lastClick, QSize(1, 1)) : QRect();
}

void StatusNotifierItem::activateAt(QPoint position) {
    lastClick = position;
    emit activated();
}

void StatusNotifierItem::openMenuAt(QPoint position) {
    lastClick = position;
    if (menu_)
        menu_->popup(position);
}

void StatusNotifierItem::setMenu(QMenu* menu) {
    menu_ = menu;
}
