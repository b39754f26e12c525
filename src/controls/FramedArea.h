#pragma once

#include <QWidget>

class Theme;

/// A rounded area with an outline and the ground for text, in which one writes or reads. Main
/// thread.
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
