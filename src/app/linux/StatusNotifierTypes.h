#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QImage>
#include <QList>
#include <QMetaType>
#include <QString>

/// One picture as StatusNotifierItem hosts take it: width, height, then ARGB32 pixels
/// in network byte order (signature "(iiay)").
struct SniPixmap {
    int width = 0;
    int height = 0;
    QByteArray pixels;

    bool operator==(const SniPixmap&) const = default;
};
using SniPixmaps = QList<SniPixmap>;

/// Signature "(sa(iiay)ss)": icon name, pictures, title, text.
struct SniToolTip {
    QString iconName;
    SniPixmaps pixmaps;
    QString title;
    QString text;

    bool operator==(const SniToolTip&) const = default;
};

Q_DECLARE_METATYPE(SniPixmap)
Q_DECLARE_METATYPE(SniToolTip)

QDBusArgument& operator<<(QDBusArgument& argument, const SniPixmap& pixmap);
const QDBusArgument& operator>>(const QDBusArgument& argument, SniPixmap& pixmap);
QDBusArgument& operator<<(QDBusArgument& argument, const SniToolTip& toolTip);
const QDBusArgument& operator>>(const QDBusArgument& argument, SniToolTip& toolTip);

/// Registers the types with QtDBus; safe to call more than once.
void registerStatusNotifierTypes();

/// `image` as a host's picture, device pixel ratio ignored (hosts take pixels).
SniPixmap sniPixmap(const QImage& image);
