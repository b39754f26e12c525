#pragma once

#include "Themed.h"

#include <QScrollBar>

/// A slim vertical scroll bar without arrows. Its ground is that of the text that it scrolls. Main
/// thread.
class ScrollBar : public Themed<QScrollBar>
{
    Q_OBJECT

public:
    explicit ScrollBar(const Theme& theme, QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};
