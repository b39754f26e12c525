#pragma once

#include <QWidget>

class Theme;

/// A rounded area with the ground of text and an outline, for what is written or read. Main thread.
class FramedArea : public QWidget
{
    Q_OBJECT

public:
    static constexpr int radius = 8;

    explicit FramedArea(const Theme& theme, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Theme& m_theme;
};
