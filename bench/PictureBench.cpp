// Counts the words that are read in pictures in which text is hard to read, against Tesseract's own
// program on the same files.

#include "HardPictures.h"
#include "OCR.h"
#include "ResultRow.h"
#include "TesseractProgram.h"
#include "WordAccuracy.h"

#include <QGuiApplication>
#include <QTemporaryDir>

#include <stdexcept>

namespace {

/// The words read right in the pictures of a row.
struct Count
{
    std::size_t ours = 0;
    std::size_t theirs = 0;
    int fewer = 0; // pictures in which theirs are more
};

Count countOf(const HardPictures::Row& row, const QString& program)
{
    static const std::vector<std::string> words = HardPictures::words();
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("picture.png"));
    Count count;
    for (const QImage& picture : row.pictures) {
        if (!picture.save(file))
            throw std::runtime_error("The picture could not be saved.");
        const std::size_t ours = WordAccuracy::wordsRight(
            OCR::recognize(std::filesystem::path(file.toStdString())), words);
        const std::size_t theirs =
            WordAccuracy::wordsRight(TesseractProgram::read(program, file, true), words);
        count.ours += ours;
        count.theirs += theirs;
        count.fewer += theirs > ours ? 1 : 0;
    }
    return count;
}

void measure(const QString& program)
{
    std::size_t pictures = 0;
    int fewer = 0;
    const std::size_t words = HardPictures::words().size();
    for (const HardPictures::Row& row : HardPictures::rows()) {
        const Count count = countOf(row, program);
        pictures += row.pictures.size();
        fewer += count.fewer;
        ResultRow::print(
            "words right, " + row.name,
            std::to_string(count.ours) + " of " + std::to_string(words * row.pictures.size()),
            ">= " + std::to_string(count.theirs) + " (tesseract)", count.ours >= count.theirs);
    }
    ResultRow::print("pictures with fewer words right than tesseract",
                     std::to_string(fewer) + " of " + std::to_string(pictures));
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const QString program = TesseractProgram::path();
    if (program.isEmpty()) {
        ResultRow::print("tesseract", "no such program on the search path");
        return 0;
    }
    try {
        measure(program);
    } catch (const std::exception& error) {
        std::cerr << "picture-bench: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
