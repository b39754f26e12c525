#pragma once

#include <QRect>

#include <algorithm>
#include <cstdlib>

/// How the user chooses a rectangle: by dragging with the left button. The right one cancels.
class RegionGesture
{
public:
    enum class State { waiting, dragging, chosen, cancelled };

    State state() const { return m_state; }

    /// The rectangle in pixels of the screen, empty unless it is being dragged out or has been
    /// chosen.
    QRect rectangle() const
    {
        if (m_state != State::dragging && m_state != State::chosen)
            return {};
        return {QPoint(std::min(m_from.x(), m_to.x()), std::min(m_from.y(), m_to.y())),
                QSize(std::abs(m_to.x() - m_from.x()), std::abs(m_to.y() - m_from.y()))};
    }

    QPoint pointer() const { return m_to; }

    /// Buttons are numbered as X does; points are in pixels of the screen.
    void press(int button, QPoint at)
    {
        if (button == rightButton)
            m_state = State::cancelled;
        if (button != leftButton || m_state != State::waiting)
            return;
        m_state = State::dragging;
        m_from = m_to = at;
    }

    void move(QPoint to)
    {
        if (m_state == State::dragging)
            m_to = to;
    }

    void release(int button, QPoint at)
    {
        if (button != leftButton || m_state != State::dragging)
            return;
        m_to = at;
        const QSize size = rectangle().size();
        const bool isDrag = size.width() >= smallestSide && size.height() >= smallestSide;
        m_state = isDrag ? State::chosen : State::waiting;
    }

    void cancel() { m_state = State::cancelled; }

private:
    static constexpr int leftButton = 1;
    static constexpr int rightButton = 3;
    static constexpr int smallestSide = 3; // pixels; less is a click with an unsteady hand

    State m_state = State::waiting;
    QPoint m_from;
    QPoint m_to;
};
