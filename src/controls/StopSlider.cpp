#include "StopSlider.h"

#include "Contrast.h"
#include "Drawing.h"
#include "Fade.h"

#include <QMouseEvent>

#include <cmath>

static constexpr int lastStop = 2;
static constexpr qreal thumbSize = 16;
static constexpr qreal trackHeight = 4;
static constexpr qreal markSize = 4;
static constexpr qreal margin = thumbSize / 2 + Drawing::focusWidth; // room for the focus ring
static constexpr qreal shadowOpacity = 0.18;

StopSlider::StopSlider(const Theme& theme, QWidget* parent)
    : Themed(theme, Qt::Horizontal, parent), m_thumb(new Fade(theme, *this))
{
    setRange(0, lastStop);
    setPageStep(1);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(this, &QSlider::valueChanged, m_thumb, [this](int value) { m_thumb->moveTo(value); });
}

QSize StopSlider::sizeHint() const
{
    return {120, 24};
}

qreal StopSlider::positionOf(qreal stop) const
{
    const qreal share = stop / lastStop;
    const qreal visual = layoutDirection() == Qt::RightToLeft ? 1 - share : share;
    return margin + visual * (width() - 2 * margin);
}

/// The stop nearest to `position`.
int StopSlider::stopAt(qreal position) const
{
    const qreal visual = (position - margin) / (width() - 2 * margin);
    const qreal share = layoutDirection() == Qt::RightToLeft ? 1 - visual : visual;
    return static_cast<int>(std::lround(std::clamp(share, 0.0, 1.0) * lastStop));
}

void StopSlider::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    setSliderDown(true);
    setValue(stopAt(event->position().x()));
}

void StopSlider::mouseMoveEvent(QMouseEvent* event)
{
    if (isSliderDown())
        setValue(stopAt(event->position().x()));
}

void StopSlider::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        setSliderDown(false);
    update();
}

void StopSlider::paintEvent(QPaintEvent*)
{
    Drawing::Painter painter(*this);
    paintTrack(painter);
    paintThumb(painter);
}

void StopSlider::paintTrack(QPainter& painter) const
{
    const qreal middle = height() / 2.0;
    const auto track = [middle](qreal from, qreal to) {
        return QRectF(std::min(from, to), middle - trackHeight / 2, std::abs(to - from),
                      trackHeight)
            .adjusted(-trackHeight / 2, 0, trackHeight / 2, 0);
    };
    const qreal thumb = positionOf(m_thumb->value());
    Drawing::fill(painter, track(positionOf(0), positionOf(lastStop)), trackHeight / 2,
                  m_theme[ColorRole::track]);
    Drawing::fill(painter, track(positionOf(0), thumb), trackHeight / 2,
                  m_theme[ColorRole::accent]);
    for (int stop = 0; stop <= lastStop; ++stop) {
        const bool isPassed = stop < m_thumb->value();
        const qreal size = isPassed ? markSize + 2 : markSize;
        const QRectF mark(positionOf(stop) - size / 2, middle - size / 2, size, size);
        Drawing::fill(painter, mark, size / 2,
                      m_theme[isPassed ? ColorRole::accent : ColorRole::secondary]);
    }
}

void StopSlider::paintThumb(QPainter& painter) const
{
    const QPointF center(positionOf(m_thumb->value()), height() / 2.0);
    const QRectF thumb(center - QPointF(thumbSize / 2, thumbSize / 2),
                       QSizeF(thumbSize, thumbSize));
    if (hasFocus()) {
        const qreal width = Drawing::focusWidth;
        const QColor ring = Drawing::faded(m_theme[ColorRole::accent], Drawing::focusOpacity);
        Drawing::edge(painter, thumb.adjusted(-width, -width, width, width), thumbSize / 2 + width,
                      QPen(ring, width));
    }
    // Opaque, so that the track does not show through a disabled thumb.
    painter.setOpacity(1);
    Drawing::fill(painter, thumb.translated(0, 0.5), thumbSize / 2,
                  Drawing::faded(Qt::black, shadowOpacity));
    QColor color = m_theme[ColorRole::thumb];
    if (!isEnabled())
        color = Contrast::over(Drawing::faded(color, Drawing::disabledOpacity),
                               m_theme[ColorRole::window]);
    Drawing::fill(painter, thumb, thumbSize / 2, color);
    if (isSliderDown())
        Drawing::fill(painter, thumb, thumbSize / 2, m_theme[ColorRole::pressed]);
    Drawing::edge(painter, thumb, thumbSize / 2, QPen(m_theme[ColorRole::separator], 1));
}
