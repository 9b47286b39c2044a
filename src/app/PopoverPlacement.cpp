#include "PopoverPlacement.h"

#include <algorithm>

QPoint popoverPosition(const QRect& itemGeometry, std::optional<QPoint> cursor,
                       const QRect& available, const QSize& size, bool panelAtBottom) {
    QRect anchor;
    if (itemGeometry.isValid() && !itemGeometry.isEmpty())
        anchor = itemGeometry;
    else if (cursor)
        anchor = QRect(*cursor, QSize(1, 1));
    else if (panelAtBottom)
        anchor = QRect(available.right() - 1, available.bottom() + 1, 1, 1);
    else
        anchor = QRect(available.right() - 1, available.top(), 1, 1);

    int x = anchor.center().x() - size.width() / 2;
    int y = anchor.bottom() + 1;
    // A panel at the bottom of the screen: open upwards.
    if (y + size.height() > available.bottom() + 1)
        y = anchor.top() - size.height();
    x = std::clamp(x, available.left(),
                   std::max(available.left(), available.right() + 1 - size.width()));
    y = std::clamp(y, available.top(),
                   std::max(available.top(), available.bottom() + 1 - size.height()));
    return {x, y};
}
