#include "Spinner.h"

#include "Drawing.h"

#include <QTimerEvent>

static constexpr int extent = 20;
static constexpr int spokes = 8;
static constexpr int stepMilliseconds = 110;
static constexpr qreal innerRadius = 4.5;
static constexpr qreal outerRadius = 8.5;
static constexpr qreal lineWidth = 2;
static constexpr qreal faintest = 0.2;

Spinner::Spinner(const Theme& theme, QWidget* parent) : Themed(theme, parent)
{
    setFixedSize(extent, extent);
}

void Spinner::followTheme()
{
    if (isVisible() && m_theme.fadeDuration() > 0)
        m_timer.start(stepMilliseconds, this);
    else
        m_timer.stop();
    update();
}

void Spinner::showEvent(QShowEvent*)
{
    followTheme();
}

void Spinner::hideEvent(QHideEvent*)
{
    m_timer.stop();
}

void Spinner::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != m_timer.timerId())
        return;
    m_step = (m_step + 1) % spokes;
    update();
}

void Spinner::paintEvent(QPaintEvent*)
{
    Drawing::Painter painter(*this);
    painter.translate(rect().toRectF().center());
    painter.rotate(m_step * 360.0 / spokes);
    for (int spoke = 0; spoke < spokes; ++spoke) {
        painter.rotate(360.0 / spokes);
        const qreal opacity = faintest + (1 - faintest) * (spoke + 1) / spokes;
        painter.setPen(QPen(Drawing::faded(m_theme[ColorRole::secondary], opacity), lineWidth,
                            Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(QPointF(0, -innerRadius), QPointF(0, -outerRadius));
    }
}
