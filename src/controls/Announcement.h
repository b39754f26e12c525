#pragma once

#include <QWidget>

/// Tells screen readers something without being asked. It is an invisible element of its own: they
/// tell only notifications, and those only when they are shown. Main thread.
class Announcement : public QWidget
{
    Q_OBJECT

public:
    /// Tells `text` in the window of `widget`, as soon as that window is on the screen. It replaces
    /// a text that has not been told yet.
    static void tell(const QWidget& widget, const QString& text);

protected:
    void hideEvent(QHideEvent* event) override;

private:
    explicit Announcement(QWidget* window);
};
