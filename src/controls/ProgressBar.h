#pragma once

#include <QProgressBar>

class Theme;

/// Shows how much is done. Main thread.
class ProgressBar : public QProgressBar
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
    const Theme& m_theme;
    double m_fraction = 0;
};
