#include "AboutView.h"

#include "LinkButton.h"
#include "tray/Symbols.h"

#include <QDesktopServices>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace {

constexpr int symbolSize = 72;
const QColor symbolColour(0xFF, 0x2D, 0x55);

QLabel* centredLabel(const QString& text, qreal pointSize, QFont::Weight weight, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    QFont font = label->font();
    font.setPointSizeF(pointSize);
    font.setWeight(weight);
    label->setFont(font);
    label->setAlignment(Qt::AlignHCenter);
    return label;
}

} // namespace

AboutView::AboutView(QWidget* parent) : QWidget(parent) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(24, 24, 24, 24);
    column->setSpacing(8);
    column->addStretch(1);

    symbol = new QLabel(this);
    symbol->setObjectName(QStringLiteral("aboutSymbol"));
    symbol->setAlignment(Qt::AlignHCenter);
    drawSymbol();
    column->addWidget(symbol);
    column->addSpacing(4);

    column->addWidget(centredLabel(QStringLiteral("Vorlune"), 20, QFont::Bold, this));
    auto* version = centredLabel(QStringLiteral("Version 1.0"), 10, QFont::Normal, this);
    version->setForegroundRole(QPalette::PlaceholderText);
    column->addWidget(version);
    column->addSpacing(6);

    auto* tagline = centredLabel(
        QStringLiteral("Your machine's pulse, always in view.\nQuietly watching from the tray."),
        10, QFont::Normal, this);
    tagline->setObjectName(QStringLiteral("tagline"));
    column->addWidget(tagline);
    column->addSpacing(10);

    auto* maker = new QHBoxLayout;
    maker->setSpacing(4);
    maker->addStretch(1);
    auto* madeBy = new QLabel(QStringLiteral("Made by"), this);
    madeBy->setForegroundRole(QPalette::PlaceholderText);
    maker->addWidget(madeBy);
    auto* link = new LinkButton(QStringLiteral("Orrindale"), this);
    link->setObjectName(QStringLiteral("makerLink"));
    connect(link, &LinkButton::clicked, this, [] { QDesktopServices::openUrl(makerSite()); });
    maker->addWidget(link);
    maker->addStretch(1);
    column->addLayout(maker);
    column->addStretch(1);
}

QUrl AboutView::makerSite() {
    return QUrl(QStringLiteral("https://orrindale.com"));
}

void AboutView::showEvent(QShowEvent* event) {
    // Drawn for the pixel ratio of the screen the window is on.
    drawSymbol();
    QWidget::showEvent(event);
}

void AboutView::drawSymbol() {
    symbol->setPixmap(
        symbolPixmap("heart.text.square.fill", symbolColour, symbolSize, devicePixelRatioF()));
}
