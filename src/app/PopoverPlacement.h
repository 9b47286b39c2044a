#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

#include <optional>

/// Where a popover of `size` goes: under the tray item when its geometry is
/// known, else under the cursor, else at the right-hand corner of `available` on the
/// panel's side (the bottom one when `panelAtBottom`); flipped above the item when it
/// would run off the bottom, and kept inside `available`.
QPoint popoverPosition(const QRect& itemGeometry, std::optional<QPoint> cursor,
                       const QRect& available, const QSize& size, bool panelAtBottom = false);
