#pragma once

#include <QFrame>
#include <QPointer>

/// A frameless popup holding one popover view; it closes on a click elsewhere. It takes
/// its content's height whenever that changes, up to the screen's available height less
/// a margin, beyond which the content scrolls.
class PopoverWindow : public QFrame {
    Q_OBJECT
public:
    PopoverWindow(QWidget* content, int width, QWidget* parent = nullptr);

    /// Shows the popover under the tray item at `itemGeometry`; an invalid geometry (the
    /// host does not tell) places it at the cursor, or, without `atCursor` (a request from
    /// outside, such as a second start), at the panel's corner.
    void showUnder(const QRect& itemGeometry, bool atCursor = true);
signals:
    void closed();

protected:
    void hideEvent(QHideEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    int fittingHeight() const;

    QWidget* content;
    class QScrollArea* scroll;
    QRect available;
    bool growsUp = false;
};
