#include "Characters.h"
#include "DocumentReader.h"
#include "PageRecognition.h"
#include "PdfDocument.h"
#include "RecognizedPages.h"
#include "TextRecognizer.h"
#include "WhiteSpace.h"

#include <QImage>
#include <QPainter>
#include <QPdfDocument>
#include <QPdfDocumentRenderOptions>
#include <QPdfSelection>

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace DocumentReader {

namespace {

/// A text layer with fewer characters than this on all pages together is a scanner's stamp, not the
/// text.
constexpr std::size_t leastTextLayer = 41;
constexpr double pixelsPerPoint = 2;
constexpr double mostPixels = 50e6; // a poster of the size A0 has 32 million

/// The text of a page in a readable form. Line ends become line feeds. Marks that stand for hyphens
/// at line ends are removed, and so is what is no text in any encoding.
std::string tidied(QString text)
{
    constexpr char16_t hyphenMark = 0xFFFE;
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    text.replace(u'\r', u'\n');
    text.removeIf([](QChar character) { return character.isNull() || character == hyphenMark; });
    return text.toStdString(); // this also replaces lone surrogates
}

std::string textLayer(QPdfDocument& document)
{
    std::string text;
    for (int page = 0; page < document.pageCount(); ++page) {
        if (page > 0)
            text += '\n';
        text += tidied(document.getAllText(page).text());
    }
    return text;
}

/// The size in pixels at which a page of `points` is drawn. It has at most `mostPixels` in all,
/// because a page may claim to be kilometres wide. It is empty if the page is smaller than a pixel
/// or has no real size.
QSize renderedSize(QSizeF points)
{
    const double width = points.width() * pixelsPerPoint;
    const double height = points.height() * pixelsPerPoint;
    if (!std::isfinite(width * height))
        return {};
    const double shrink = std::min(1.0, std::sqrt(mostPixels / (width * height)));
    const auto pixels = [shrink](double length) {
        return static_cast<int>(std::lround(std::clamp(length * shrink, 0.0, mostPixels)));
    };
    return {pixels(width), pixels(height)};
}

/// The page on white paper, with its annotations. A null image if it cannot be drawn.
QImage rendered(QPdfDocument& document, int page)
{
    const QSize size = renderedSize(document.pagePointSize(page));
    QPdfDocumentRenderOptions options;
    options.setRenderFlags(QPdfDocumentRenderOptions::RenderFlag::Annotations);
    QImage image = size.isEmpty() ? QImage() : document.render(page, size, options);
    if (!image.isNull()) {
        QPainter painter(&image);
        painter.setCompositionMode(QPainter::CompositionMode_DestinationOver);
        painter.fillRect(image.rect(), Qt::white);
    }
    return image;
}

std::string recognizedText(QPdfDocument& document, const OnPage& onPage)
{
    RecognizedPages recognized(std::min(document.pageCount(), mostRecognizedPages));
    PageRecognition::run({.count = recognized.count(),
                          .draw = [&](int index) { return rendered(document, index); },
                          .onText =
                              [&](int index, std::optional<std::string> text) {
                                  if (onPage)
                                      onPage({index, recognized.count(), text});
                                  recognized.add(index, std::move(text));
                              },
                          .create = [] { return TextRecognizer::create(); }});
    return recognized.text();
}

} // namespace

std::string readPDF(const std::filesystem::path& file, const OnPage& onPage)
{
    PdfDocument pdf(file);
    const std::string text = textLayer(pdf.get());
    const std::string_view trimmed = WhiteSpace::trimmed(text);
    if (Characters::prefix(trimmed, leastTextLayer).characters == leastTextLayer)
        return std::string(trimmed);
    pdf.uncrop(mostRecognizedPages);
    return recognizedText(pdf.get(), onPage);
}

} // namespace DocumentReader
