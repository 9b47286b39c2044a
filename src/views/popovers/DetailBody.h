#pragma once

#include <QColor>
#include <QWidget>

class AppSettings;
class SystemMonitor;

/// The part of a sensor detail popover below its header: the value, graphs and
/// breakdown of one kind.
class DetailBody : public QWidget {
    Q_OBJECT
public:
    using QWidget::QWidget;

    /// Re-reads the published values this kind shows; `accent` is the kind's colour.
    virtual void refresh(const SystemMonitor& monitor, const AppSettings& settings,
                         const QColor& accent) = 0;
};
