#include "Label.h"

Label::Label(const Theme& theme, TextStyle style, ColorRole role, const QString& text,
             QWidget* parent)
    : Themed(theme, text, parent), m_role(role)
{
    setTextFormat(Qt::PlainText);
    setTextStyle(style);
    followTheme();
}

void Label::followTheme()
{
    Themed::followTheme();
    QPalette colors = palette();
    colors.setColor(QPalette::WindowText, m_theme[m_role]);
    setPalette(colors);
}
