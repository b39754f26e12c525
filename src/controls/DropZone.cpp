#include "DropZone.h"

#include "Drawing.h"

#include <QDragEnterEvent>
#include <QMimeData>

#include <optional>

static constexpr qreal radius = 10;
static constexpr qreal lineWidth = 1.5;
static constexpr qreal dashLength = 6;
static constexpr qreal groundOpacity = 0.12;
static constexpr qreal lineOpacity = 0.5;

static std::optional<QUrl> firstFile(const QMimeData* data)
{
    for (const QUrl& url : data->urls()) {
        if (url.isLocalFile())
            return url;
    }
    return std::nullopt;
}

DropZone::DropZone(const Theme& theme, QWidget* parent) : Themed(theme, parent)
{
    setAcceptDrops(true);
}

void DropZone::setHighlighted(bool isHighlighted)
{
    if (isHighlighted == m_isHighlighted)
        return;
    m_isHighlighted = isHighlighted;
    update();
    emit highlighted(isHighlighted);
}

void DropZone::dragEnterEvent(QDragEnterEvent* event)
{
    if (!firstFile(event->mimeData()))
        return;
    // Never a move, which would let the other program delete the file.
    event->setDropAction(Qt::CopyAction);
    event->accept();
    setHighlighted(true);
}

void DropZone::dragLeaveEvent(QDragLeaveEvent*)
{
    setHighlighted(false);
}

void DropZone::hideEvent(QHideEvent*)
{
    setHighlighted(false);
}

void DropZone::dropEvent(QDropEvent* event)
{
    setHighlighted(false);
    const std::optional<QUrl> file = firstFile(event->mimeData());
    if (!file)
        return;
    event->setDropAction(Qt::CopyAction);
    event->accept();
    emit dropped(*file);
}

void DropZone::paintEvent(QPaintEvent*)
{
    Drawing::Painter painter(*this);
    const QColor& accent = m_theme[ColorRole::accent];
    QPen pen(accent, lineWidth, Qt::CustomDashLine, Qt::FlatCap);
    pen.setDashPattern({dashLength / lineWidth, dashLength / lineWidth}); // in widths of the line
    if (m_isHighlighted)
        Drawing::fill(painter, rect(), radius, Drawing::faded(accent, groundOpacity));
    else
        pen.setColor(Drawing::faded(m_theme[ColorRole::secondary], lineOpacity));
    Drawing::edge(painter, rect(), radius, pen);
}
