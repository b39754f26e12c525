#include "Fade.h"

#include "Theme.h"

#include <QWidget>

Fade::Fade(const Theme& theme, QWidget& widget)
    : QVariantAnimation(&widget), m_theme(theme), m_widget(widget)
{
    setEasingCurve(QEasingCurve::OutCubic);
}

void Fade::moveTo(qreal target)
{
    if (state() == Running ? endValue().toReal() == target : m_value == target)
        return;
    stop();
    const int duration = m_widget.isVisible() ? m_theme.fadeDuration() : 0;
    if (duration == 0) {
        m_value = target;
        m_widget.update();
        return;
    }
    setStartValue(m_value);
    setEndValue(target);
    setDuration(duration);
    start();
}

void Fade::updateCurrentValue(const QVariant& value)
{
    if (state() != Running)
        return; // Qt reports values while start and end are set
    m_value = value.toReal();
    m_widget.update();
}
