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
    /// The size of the content, in logical pixels.
    static constexpr QSize contentSize = {460, 640};

    /// Owns `content`. The popover paints the ground behind it, in the window colour of its
    /// palette, and the round corners.
    explicit Popover(std::unique_ptr<QWidget> content);

    /// Shows the popover with its content at `area` of the desktop. Does nothing if it is open.
    void showAt(const QRect& area);

    /// Whether the popover is shown and not about to close.
    bool isOpen() const { return isVisible() && !m_isClosing; }

    /// Hides the popover. If the window manager has not shown it yet, which may take a moment after
    /// showAt(), it is hidden once that has happened.
    void dismiss();

    /// Whether the popover is on the workspace that the user looks at.
    bool isHere() const;

    /// Whether a picture of `window`, of another process, would show the popover.
    bool covers(std::uint32_t window) const;

    /// Brings the popover to the front, on the workspace that the user looks at, and gives it the
    /// keyboard.
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
    int m_shadow = 0;         // the shadow's width; 0 if the desktop does not compose windows
    bool m_isClosing = false; // to be hidden once it has been shown
};
