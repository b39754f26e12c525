#pragma once

#include "Themed.h"

#include <QPointer>
#include <QWidget>

/// The ring around what has the keyboard focus, outside of its bounds. There is one for each
/// window, over everything else in it. Main thread.
class FocusRing : public Themed<QWidget>
{
    Q_OBJECT

public:
    /// The window owns the ring.
    FocusRing(const Theme& theme, QWidget& window);

    /// Makes the ring show around `outlined`, whose corners have this radius, while `focused` has
    /// the focus. Requires: `outlined` lives as long as `focused`.
    static void outline(QWidget& focused, QWidget& outlined, int radius);

protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void follow(QWidget* focused);
    void place();

    QPointer<QWidget> m_outlined;
    int m_radius = 0;
    QList<QPointer<QWidget>> m_watched; // m_outlined and the widgets around it
};
