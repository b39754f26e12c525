#pragma once

#include "Label.h"

/// A label of one line, whatever its text is. If the text does not fit, its middle is left out, and
/// pointing at the label shows it whole. Main thread.
class OneLineLabel : public Label
{
    Q_OBJECT

public:
    OneLineLabel(const Theme& theme, TextStyle style, ColorRole role, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QString line() const;
};
