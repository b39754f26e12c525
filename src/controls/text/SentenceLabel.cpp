#include "SentenceLabel.h"

#include <QPainter>

#include <algorithm>

SentenceLabel::SentenceLabel(const Theme& theme, TextStyle style, ColorRole role,
                             const QString& text, QWidget* parent)
    : Label(theme, style, role, text, parent)
{
    setAlignment(Qt::AlignCenter);
    setWordWrap(true);
}

QString SentenceLabel::broken() const
{
    const int width = contentsRect().width();
    const auto fits = [this, width](const QString& line) {
        return fontMetrics().horizontalAdvance(line) <= width;
    };
    QString broken = text();
    broken.replace(QStringLiteral(". "), QStringLiteral(".\n"));
    const QStringList sentences = broken.split(u'\n');
    const bool isBroken = !fits(text()) && std::all_of(sentences.begin(), sentences.end(), fits);
    return isBroken ? broken : text();
}

void SentenceLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    painter.drawText(contentsRect(), Qt::AlignCenter | Qt::TextWordWrap, broken());
}
