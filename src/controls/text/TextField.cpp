#include "TextField.h"

#include "Drawing.h"
#include "FocusRing.h"

#include <QKeyEvent>

static constexpr int radius = 6;
static constexpr int fieldHeight = 24;
static constexpr int padding = 6; // besides the two pixels that Qt adds

TextField::TextField(const Theme& theme, QWidget* parent) : Themed(theme, parent)
{
    setFrame(false);
    setTextMargins(padding, 0, padding, 0);
    setFixedHeight(fieldHeight);
    FocusRing::outline(*this, *this, radius);
    setTextStyle(TextStyle::body);
    followTheme();
}

void TextField::followTheme()
{
    Themed::followTheme();
    // Qt's own ground would have square corners.
    QPalette colors = palette();
    colors.setColor(QPalette::Base, Qt::transparent);
    setPalette(colors);
}

QSize TextField::sizeHint() const
{
    return {240, fieldHeight};
}

/// Qt announces Return and would also pass it on to the widget around the field.
void TextField::keyPressEvent(QKeyEvent* event)
{
    QLineEdit::keyPressEvent(event);
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        event->accept();
}

void TextField::paintEvent(QPaintEvent* event)
{
    {
        Drawing::Painter painter(*this);
        Drawing::fill(painter, rect(), radius, m_theme[ColorRole::textBackground]);
        Drawing::edge(painter, rect(), radius, QPen(m_theme[ColorRole::outline], 1));
    }
    QLineEdit::paintEvent(event);
}
