#pragma once

#include <QVariantAnimation>

class QWidget;
class Theme;

/// A number that a widget draws itself by, and that moves smoothly to its target. The theme says
/// how long this takes. It moves at once if motion is reduced or the widget is not seen. Main
/// thread.
class Fade : public QVariantAnimation
{
    Q_OBJECT

public:
    /// The widget owns the fade and is redrawn whenever the number changes.
    Fade(const Theme& theme, QWidget& widget);

    qreal value() const { return m_value; }
    void moveTo(qreal target);

protected:
    void updateCurrentValue(const QVariant& value) override;

private:
    const Theme& m_theme;
    QWidget& m_widget;
    qreal m_value = 0;
};
