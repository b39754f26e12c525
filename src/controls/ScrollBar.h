#pragma once

#include <QScrollBar>

class Theme;

/// A slim scroll bar without arrows. Its ground is that of the text that it scrolls. Main thread.
class ScrollBar : public QScrollBar
{
    Q_OBJECT

public:
    ScrollBar(const Theme& theme, Qt::Orientation orientation, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Theme& m_theme;
};
