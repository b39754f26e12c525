#pragma once

#include <QColor>
#include <QImage>
#include <QString>
#include <QStringList>

/// Pictures of text, as a screenshot or a scanner would give them. Needs a QGuiApplication.
namespace TextImage {

struct Look
{
    QString family = QStringLiteral("DejaVu Sans");
    int pixelSize = 13;
    QColor ink = Qt::black;
    QColor ground = Qt::white;
};

/// `lines` below each other with a margin around them, opaque where the ground is.
QImage render(const QStringList& lines, const Look& look);
QImage render(const QStringList& lines);

} // namespace TextImage
