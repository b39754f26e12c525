#pragma once

#include "Themed.h"

#include <QLineEdit>

/// A field for one line of text. It keeps Return to itself. Main thread.
class TextField : public Themed<QLineEdit>
{
    Q_OBJECT

public:
    explicit TextField(const Theme& theme, QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void followTheme() final;
};
