// Measures how much faster the pages of a scan are recognised side by side than one after the
// other.

#include "DocumentReader.h"
#include "DocumentSamples.h"
#include "Figure.h"
#include "OCR.h"
#include "ResultRow.h"
#include "TextRecognizer.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPdfDocument>
#include <QTemporaryDir>

#include <stdexcept>
#include <string>

namespace {

/// As the reader drew and read pages before it did so side by side.
std::string readOneByOne(const std::filesystem::path& file)
{
    QPdfDocument document;
    document.load(QString::fromStdString(file.string()));
    const auto recognizer = TextRecognizer::create();
    QPdfDocumentRenderOptions options;
    options.setRenderFlags(QPdfDocumentRenderOptions::RenderFlag::Annotations);
    std::string text;
    for (int page = 0; page < document.pageCount(); ++page) {
        const QSize size = (document.pagePointSize(page) * 2).toSize();
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.drawImage(0, 0, document.render(page, size, options));
        painter.end();
        text.append(page == 0 ? "" : "\n\n").append(OCR::recognize(image, *recognizer));
    }
    return text;
}

void measure(const std::filesystem::path& file, int pages)
{
    constexpr double leastRatio = 1.7;
    DocumentSamples::writeScan(file, pages);
    std::string text;
    std::string expected;
    const double single = Figure::seconds([&] { expected = readOneByOne(file); });
    const double together = Figure::seconds([&] { text = DocumentReader::readPDF(file); });
    const std::string what = "scan of " + std::to_string(pages) + " dense pages, ";
    ResultRow::print(what + "one by one", Figure::fixed(single, 1) + " s");
    ResultRow::print(what + "side by side", Figure::fixed(together, 1) + " s");
    ResultRow::print("one by one / side by side", Figure::fixed(single / together, 2), ">= 1.7",
                     single / together >= leastRatio);
    ResultRow::print("text side by side", text == expected ? "the same" : "another", "the same",
                     text == expected);
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const QTemporaryDir temporary;
    const std::filesystem::path file = temporary.filePath(QStringLiteral("scan.pdf")).toStdString();
    try {
        measure(file, argc > 1 ? std::stoi(argv[1]) : 15);
    } catch (const std::exception& error) {
        std::cerr << "scan-bench: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
