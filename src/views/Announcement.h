#pragma once

#include <QWidget>

/// What screen readers are told without being asked. An element of its own without looks, because
/// they tell nothing but notifications, which are what comes to be shown. Main thread.
class Announcement : public QWidget
{
    Q_OBJECT

public:
    /// Tells `text` in the window of `widget`, as soon as that is on the screen; in place of what
    /// has not been told yet.
    static void tell(const QWidget& widget, const QString& text);

protected:
    void hideEvent(QHideEvent* event) override;

private:
    explicit Announcement(QWidget* window);
};
