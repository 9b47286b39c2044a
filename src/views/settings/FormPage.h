#pragma once

#include <QScrollArea>

class FormSection;
class QVBoxLayout;

/// One tab of the settings window: its sections stacked top to bottom,
/// scrolling vertically when they do not fit.
class FormPage : public QScrollArea {
    Q_OBJECT
public:
    explicit FormPage(QWidget* parent = nullptr);

    /// Appends a new section titled `title`.
    FormSection* addSection(const QString& title);

private:
    QVBoxLayout* column;
};
