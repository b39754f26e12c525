#pragma once

#include "Themed.h"

#include <QSlider>

class Fade;

/// A slider with three marked stops, 0, 1 and 2, and no positions between them. Main thread.
class StopSlider : public Themed<QSlider>
{
    Q_OBJECT

public:
    explicit StopSlider(const Theme& theme, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    qreal positionOf(qreal stop) const;
    int stopAt(qreal position) const;
    void paintTrack(QPainter& painter) const;
    void paintThumb(QPainter& painter) const;

    Fade* m_thumb; // where the thumb is, in stops
};
