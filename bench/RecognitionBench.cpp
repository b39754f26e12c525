// Measures the recognition of text on screenshots, against Tesseract's own program.

#include "Figure.h"
#include "OCR.h"
#include "RecognitionPage.h"
#include "ResultRow.h"
#include "TesseractProgram.h"
#include "WordAccuracy.h"

#include <QGuiApplication>
#include <QTemporaryDir>

#include <optional>
#include <stdexcept>

namespace {

struct Reading
{
    double accuracy; // 0 to 1
    double seconds;
};

template <typename Read>
Reading measure(Read read)
{
    static const std::vector<std::string> words = RecognitionPage::words();
    std::string text;
    const double seconds = Figure::seconds([&] { text = read(); });
    return {WordAccuracy::of(text, words), seconds};
}

struct Readings
{
    Reading ours;
    std::optional<Reading> theirs;
    std::optional<Reading> theirsSingle;
};

Readings readingsOf(const QImage& page, const QString& program)
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("page.png"));
    if (!page.save(file))
        throw std::runtime_error("The page could not be saved.");
    Readings result{
        measure([&] { return OCR::recognize(std::filesystem::path(file.toStdString())); }), {}, {}};
    if (!program.isEmpty()) {
        result.theirs = measure([&] { return TesseractProgram::read(program, file, false); });
        result.theirsSingle = measure([&] { return TesseractProgram::read(program, file, true); });
    }
    return result;
}

std::string percent(double share)
{
    return Figure::fixed(share * 100, 2) + " %";
}

std::string seconds(double value)
{
    return Figure::fixed(value, 2) + " s";
}

void printRows(const std::string& name, double target, const Readings& readings)
{
    const Reading& ours = readings.ours;
    const std::string what = "recognition, " + name;
    ResultRow::print(what, percent(ours.accuracy), ">= " + percent(target),
                     ours.accuracy >= target);
    if (!readings.theirs || !readings.theirsSingle) {
        ResultRow::print(what + ", time", seconds(ours.seconds));
        return;
    }
    const Reading& theirs = *readings.theirs;
    const Reading& single = *readings.theirsSingle;
    ResultRow::print(what + ", against tesseract", percent(ours.accuracy),
                     ">= " + percent(theirs.accuracy), ours.accuracy >= theirs.accuracy);
    ResultRow::print(what + ", time", seconds(ours.seconds),
                     "< " + seconds(theirs.seconds) + " (tesseract)",
                     ours.seconds < theirs.seconds);
    ResultRow::print("tesseract with one thread, " + name,
                     percent(single.accuracy) + ", " + seconds(single.seconds));
}

struct Font
{
    const char* name;
    const char* family;
};

void measureAll(const QString& program)
{
    constexpr Font fonts[] = {
        {"sans", "DejaVu Sans"}, {"serif", "DejaVu Serif"}, {"mono", "DejaVu Sans Mono"}};
    for (const Font& font : fonts) {
        for (const int pixelSize : {11, 12, 13}) {
            for (const bool isDark : {false, true}) {
                const std::string name = std::string(font.name) + ' ' + std::to_string(pixelSize) +
                                         " px, " + (isDark ? "dark" : "light");
                const double target = pixelSize == 11 ? 0.985 : 0.99;
                const QImage page =
                    RecognitionPage::render({QString::fromLatin1(font.family), pixelSize, isDark});
                printRows(name, target, readingsOf(page, program));
            }
        }
    }
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const QString program = TesseractProgram::path();
    if (program.isEmpty())
        ResultRow::print("tesseract", "no such program on the search path");
    try {
        measureAll(program);
    } catch (const std::exception& error) {
        std::cerr << "recognition-bench: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
