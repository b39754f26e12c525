#pragma once

#include <QWidget>

class Theme;

/// A horizontal line. Main thread.
class Divider : public QWidget
{
    Q_OBJECT

public:
    explicit Divider(const Theme& theme, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Theme& m_theme;
};
