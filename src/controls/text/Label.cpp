#include "Label.h"

#include "Theme.h"

Label::Label(const Theme& theme, TextStyle style, ColorRole role, const QString& text,
             QWidget* parent)
    : QLabel(text, parent), m_theme(theme), m_style(style), m_role(role)
{
    setTextFormat(Qt::PlainText);
    follow();
    connect(&theme, &Theme::changed, this, &Label::follow);
}

void Label::follow()
{
    setFont(m_theme.font(m_style));
    QPalette colors = palette();
    colors.setColor(QPalette::WindowText, m_theme[m_role]);
    setPalette(colors);
}
