#include "PopoverPlace.h"

#include <algorithm>

namespace PopoverPlace {

static constexpr int gap = 4; // between the popover and the icon or the edge

/// The place of a popover of `size`, with its upper left corner as near to `wanted` as the work
/// area allows.
static QRect inside(const QPoint& wanted, const QSize& size, const QRect& workArea)
{
    const QSize present = size.boundedTo(workArea.size());
    const QPoint most = workArea.topLeft() + QPoint(workArea.width() - present.width(),
                                                    workArea.height() - present.height());
    return {QPoint(std::clamp(wanted.x(), workArea.left(), most.x()),
                   std::clamp(wanted.y(), workArea.top(), most.y())),
            present};
}

QRect atIcon(const QRect& icon, const QSize& size, const Monitor& monitor)
{
    const int x = icon.center().x() - size.width() / 2;
    const bool isLow = icon.center().y() > monitor.area.center().y();
    const int y = isLow ? icon.top() - gap - size.height() : icon.bottom() + 1 + gap;
    return inside({x, y}, size, monitor.workArea);
}

QRect inCorner(const QSize& size, const Monitor& monitor)
{
    const QRect& area = monitor.workArea;
    const bool isLow = area.bottom() < monitor.area.bottom() && area.top() == monitor.area.top();
    const int y = isLow ? area.bottom() + 1 - gap - size.height() : area.top() + gap;
    return inside({area.right() + 1 - gap - size.width(), y}, size, area);
}

} // namespace PopoverPlace
