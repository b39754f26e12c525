#pragma once

#include <QWidget>

#include <cstdint>
#include <memory>

/// The window that holds the whole interface. It has no frame of the window manager's, stays above
/// others and closes upon Escape. Main thread.
class Popover : public QWidget
{
    Q_OBJECT

public:
    /// Of what is in it, in logical pixels.
    static constexpr QSize contentSize = {460, 640};

    /// The ground behind `content`, in its palette's window colour, and the round corners are the
    /// popover's to paint.
    explicit Popover(std::unique_ptr<QWidget> content);

    /// Shows it with its content at `area` of the desktop. Does nothing where it is open.
    void showAt(const QRect& area);

    /// Whether it is shown and shall stay.
    bool isOpen() const { return isVisible() && !m_isClosing; }

    /// Hides it once the window manager has taken it in, which may be a moment after showAt().
    void dismiss();

    /// Whether it is on the workspace that the user looks at.
    bool isHere() const;

    /// Whether a picture of a window of another process would show it.
    bool covers(std::uint32_t window) const;

    /// Brings it to the front with the keyboard, on the workspace that the user looks at.
    void takeFocus();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    bool eventFilter(QObject* window, QEvent* event) override;

private:
    void finishClosing();
    QRect card() const;
    void paintShadow(QPainter& painter) const;

    QWidget* m_content;       // a child
    int m_shadow = 0;         // its width; 0 where the desktop does not compose windows
    bool m_isClosing = false; // as soon as it may
};
