#pragma once

#include <QColor>
#include <QWidget>

#include <functional>

class SymbolLabel;
class QVBoxLayout;

/// A titled block of the main popover: a symbol in the section's colour, the title, and
/// the rows below it. When it has an `onTap` action, a click anywhere on it runs it, and
/// so do Enter and Space once Tab has brought the focus to it. A screen reader hears its
/// title and what setSpokenValue last said ("CPU, 42 percent").
class MonitorSection : public QWidget {
    Q_OBJECT
public:
    MonitorSection(const QString& title, const QString& icon, std::function<void()> onTap = {},
                   QWidget* parent = nullptr);

    QString title() const { return title_; }
    QColor color() const { return color_; }
    /// Re-tints the symbol.
    void setColor(const QColor& color);
    /// The reading a screen reader gives after the title.
    void setSpokenValue(const QString& value);

    /// Where the section's rows go.
    QVBoxLayout* contentLayout() const { return content; }

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QString title_;
    QColor color_;
    std::function<void()> onTap;
    SymbolLabel* symbol;
    QVBoxLayout* content;
    bool hovered = false;
    bool pressed = false;
    bool focusShown = false;
};
