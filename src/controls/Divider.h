#pragma once

#include "Themed.h"

#include <QWidget>

/// A horizontal line. Main thread.
class Divider : public Themed<QWidget>
{
    Q_OBJECT

public:
    explicit Divider(const Theme& theme, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};
