#pragma once

#include <QString>
#include <QWidget>

/// The one window shown when the desktop has no system tray: what Vorlune needs
/// and how to get it on the desktop in use.
class NoTrayHostNotice : public QWidget {
    Q_OBJECT
public:
    explicit NoTrayHostNotice(QWidget* parent = nullptr);
    /// The advice for a desktop named as in XDG_CURRENT_DESKTOP.
    static QString adviceFor(const QString& currentDesktop);
};
