#pragma once

#include <QScrollBar>

class Theme;

/// A slim vertical scroll bar without arrows. Its ground is that of the text that it scrolls. Main
/// thread.
class ScrollBar : public QScrollBar
{
    Q_OBJECT

public:
    explicit ScrollBar(const Theme& theme, QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Theme& m_theme;
};
