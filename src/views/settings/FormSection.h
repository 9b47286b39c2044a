#pragma once

#include <QWidget>

class QLabel;
class QVBoxLayout;

/// A titled group of a settings form: the title, a rounded card holding the
/// rows (with hairlines between the visible ones) and optional footnotes.
class FormSection : public QWidget {
    Q_OBJECT
public:
    explicit FormSection(const QString& title, QWidget* parent = nullptr);

    /// A row with `label` on the leading side and `control` on the trailing side;
    /// a control that expands horizontally takes the space between them. A `labelWidth`
    /// lines up the controls of neighbouring rows.
    QWidget* addRow(const QString& label, QWidget* control, int labelWidth = 0);
    /// A row with `content` across its whole width.
    QWidget* addRow(QWidget* content);
    /// Small secondary text under the card.
    QLabel* addFootnote(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QWidget* card;
    QVBoxLayout* rows;
    QVBoxLayout* footnotes;
};
