#pragma once

#include "Themed.h"

#include <QBasicTimer>
#include <QWidget>

/// Shows that something is going on. It costs nothing while it is hidden, and stands still if
/// motion is reduced. Main thread.
class Spinner : public Themed<QWidget>
{
    Q_OBJECT

public:
    explicit Spinner(const Theme& theme, QWidget* parent = nullptr);

    bool isTurning() const { return m_timer.isActive(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void followTheme() final;

private:
    QBasicTimer m_timer;
    int m_step = 0;
};
