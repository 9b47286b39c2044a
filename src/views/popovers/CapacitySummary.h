#pragma once

#include <QWidget>

class QLabel;

/// The top of the memory and disk details: "used / total" large in the accent
/// colour, then the share used and the free space on one row.
class CapacitySummary : public QWidget {
    Q_OBJECT
public:
    explicit CapacitySummary(QWidget* parent = nullptr);
    void setFigures(const QString& amount, double usedFraction, const QString& freeText,
                    const QColor& accent);

private:
    QLabel* amount;
    QLabel* used;
    QLabel* free;
};
