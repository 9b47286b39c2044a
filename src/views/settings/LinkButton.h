#pragma once

#include <QAbstractButton>

/// A button drawn as a link: its text in the palette's link colour, underlined
/// while the pointer is over it.
class LinkButton : public QAbstractButton {
    Q_OBJECT
public:
    explicit LinkButton(const QString& text, QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    bool hovered = false;
};
