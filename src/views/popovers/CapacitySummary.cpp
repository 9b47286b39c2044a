#include "CapacitySummary.h"

#include "PopoverStyle.h"
#include "PopoverText.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

CapacitySummary::CapacitySummary(QWidget* parent) : QWidget(parent) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(6);
    amount = PopoverStyle::label({}, 18, QFont::Bold, this);
    amount->setObjectName(QStringLiteral("amount"));
    used = PopoverStyle::label({}, 10, QFont::Normal, this);
    used->setObjectName(QStringLiteral("used"));
    free = PopoverStyle::secondaryLabel({}, this);
    free->setObjectName(QStringLiteral("free"));

    auto* usage = new QHBoxLayout;
    usage->addWidget(used);
    usage->addStretch();
    usage->addWidget(free);
    column->addWidget(amount);
    column->addLayout(usage);
}

void CapacitySummary::setFigures(const QString& amountText, double usedFraction,
                                 const QString& freeText, const QColor& accent) {
    amount->setText(amountText);
    PopoverStyle::setTextColor(amount, accent);
    used->setText(percentText(usedFraction) + QStringLiteral(" used"));
    free->setText(freeText);
}
