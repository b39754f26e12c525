#pragma once

#include "Themed.h"

#include <QWidget>

/// A rounded area with an outline and the ground for text, in which one writes or reads. Main
/// thread.
class FramedArea : public Themed<QWidget>
{
    Q_OBJECT

public:
    static constexpr int radius = 8;

    explicit FramedArea(const Theme& theme, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};
