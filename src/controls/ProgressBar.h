#pragma once

#include "Themed.h"

#include <QProgressBar>

/// Shows how much is done. Main thread.
class ProgressBar : public Themed<QProgressBar>
{
    Q_OBJECT

public:
    explicit ProgressBar(const Theme& theme, QWidget* parent = nullptr);

    /// Shows `fraction` (0 to 1) as done. Values outside count as the nearer end.
    void setFraction(double fraction);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    double m_fraction = 0;
};
