#include "FormPage.h"

#include "FormSection.h"

#include <QVBoxLayout>

FormPage::FormPage(QWidget* parent) : QScrollArea(parent) {
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setBackgroundRole(QPalette::Window);

    auto* content = new QWidget(this);
    content->setBackgroundRole(QPalette::Window);
    column = new QVBoxLayout(content);
    column->setContentsMargins(16, 14, 16, 16);
    column->setSpacing(16);
    column->addStretch(1);
    setWidget(content);
}

FormSection* FormPage::addSection(const QString& title) {
    auto* section = new FormSection(title, widget());
    column->insertWidget(column->count() - 1, section);
    return section;
}
