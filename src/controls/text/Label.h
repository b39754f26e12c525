#pragma once

#include "ColorRole.h"
#include "TextStyle.h"

#include <QLabel>

class Theme;

/// Plain text in a style and colour of the theme. Main thread.
class Label : public QLabel
{
    Q_OBJECT

public:
    Label(const Theme& theme, TextStyle style, ColorRole role, const QString& text = {},
          QWidget* parent = nullptr);

private:
    void follow();

    const Theme& m_theme;
    TextStyle m_style;
    ColorRole m_role;
};
