#include "OneLineLabel.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

/// No more than this could be seen anyway, and measuring text takes time.
static constexpr qsizetype mostCharacters = 400;

OneLineLabel::OneLineLabel(const Theme& theme, TextStyle style, ColorRole role, QWidget* parent)
    : Label(theme, style, role, {}, parent)
{
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

/// The text with a space for every line break and other control character.
QString OneLineLabel::line() const
{
    QString line = text();
    if (line.size() > mostCharacters)
        line = line.first(mostCharacters / 2) + u'…' + line.last(mostCharacters / 2);
    for (QChar& character : line) {
        if (character.category() == QChar::Other_Control || character == QChar::LineSeparator ||
            character == QChar::ParagraphSeparator)
            character = u' ';
    }
    return line;
}

QSize OneLineLabel::sizeHint() const
{
    return {fontMetrics().horizontalAdvance(line()) + 1, fontMetrics().height()};
}

QSize OneLineLabel::minimumSizeHint() const
{
    return {0, fontMetrics().height()};
}

bool OneLineLabel::event(QEvent* event)
{
    if (event->type() != QEvent::ToolTip)
        return Label::event(event);
    if (fontMetrics().horizontalAdvance(line()) > width())
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), text().toHtmlEscaped(),
                           this);
    return true;
}

void OneLineLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    const QString shown = fontMetrics().elidedText(line(), Qt::ElideMiddle, width());
    painter.drawText(rect(), static_cast<int>(alignment()) | Qt::TextSingleLine, shown);
}
