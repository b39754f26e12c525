#pragma once

#include "Themed.h"

#include <QLabel>

/// Plain text in a style and colour of the theme. Main thread.
class Label : public Themed<QLabel>
{
    Q_OBJECT

public:
    Label(const Theme& theme, TextStyle style, ColorRole role, const QString& text = {},
          QWidget* parent = nullptr);

protected:
    void followTheme() final;

private:
    ColorRole m_role;
};
