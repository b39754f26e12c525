#include "DocumentFolder.h"
#include "DocumentReader.h"
#include "PageRecognition.h"
#include "PdfWriter.h"
#include "TextImage.h"
#include "Utf8.h"

#include <gtest/gtest.h>

#include <future>
#include <iterator>
#include <map>
#include <thread>

namespace {

class PdfTextTest : public testing::Test
{
protected:
    std::string read(const PdfWriter& pdf) const
    {
        return DocumentReader::readPDF(folder.write("document.pdf", pdf.bytes()));
    }

    std::string errorOf(std::string_view bytes) const
    {
        const std::filesystem::path file = folder.write("document.pdf", bytes);
        return DocumentFolder::errorOf([&file] { return DocumentReader::readPDF(file); });
    }

    static QImage scan(const QString& word)
    {
        TextImage::Look look;
        look.pixelSize = 40;
        return TextImage::render({word}, look);
    }

    /// A page whose text layer says `text` while nothing of it can be seen.
    static void addInvisible(PdfWriter& pdf, const std::string& text)
    {
        pdf.addPage("BT 3 Tr /F1 6 Tf 10 720 Td " + PdfWriter::shown(text) + "ET");
    }

    const DocumentFolder folder;
    const std::string longLine = "This line alone is long enough to be a text.";
    const std::string unopened = "Could not open the PDF.";
};

TEST_F(PdfTextTest, LinesAndPagesEndInLineFeeds)
{
    PdfWriter pdf;
    pdf.addTextPage({longLine, "Second (line)"});
    pdf.addTextPage({"Second page"});
    EXPECT_EQ(read(pdf), longLine + "\nSecond (line)\nSecond page");
}

TEST_F(PdfTextTest, WhiteSpaceGoesFromBothEndsOfTheWhole)
{
    PdfWriter pdf;
    pdf.addPage("");
    pdf.addTextPage({"  " + longLine});
    pdf.addPage("");
    EXPECT_EQ(read(pdf), longLine);
}

TEST_F(PdfTextTest, AWordDividedAtTheLineEndIsJoined)
{
    PdfWriter pdf;
    pdf.addTextPage({"This is quite a long line with infor-", "mation at its end"});
    EXPECT_EQ(read(pdf), "This is quite a long line with information at its end");
}

TEST_F(PdfTextTest, WhatIsNoTextNeverReachesTheResult)
{
    PdfWriter pdf;
    pdf.readCharacterAs('1', "D800");
    pdf.readCharacterAs('2', "DC00");
    pdf.readCharacterAs('3', "0000");
    pdf.readCharacterAs('4', "FFFE");
    pdf.readCharacterAs('5', "D83DDE00");
    pdf.addTextPage({longLine + "a1b2c3d4e5f"});
    const std::string text = read(pdf);
    EXPECT_TRUE(text.starts_with(longLine + "a")) << text;
    EXPECT_TRUE(Utf8::isValid(text)) << text;
    EXPECT_EQ(text.find('\0'), std::string::npos) << text;
    EXPECT_EQ(text.find("\uFFFE"), std::string::npos) << text;
}

TEST_F(PdfTextTest, FortyCharactersGoToRecognition)
{
    PdfWriter pdf;
    addInvisible(pdf, std::string(40, 'x'));
    EXPECT_EQ(read(pdf), "");
}

TEST_F(PdfTextTest, FortyOneCharactersAreTheText)
{
    PdfWriter pdf;
    addInvisible(pdf, "   " + std::string(41, 'x') + "   ");
    EXPECT_EQ(read(pdf), std::string(41, 'x'));
}

TEST_F(PdfTextTest, CharactersOfTwoCodePointsCountOnce)
{
    const std::string letter = "q\u0301";
    PdfWriter forty;
    forty.readCharacterAs('x', "00710301");
    addInvisible(forty, std::string(40, 'x'));
    EXPECT_EQ(read(forty), "");

    PdfWriter fortyOne;
    fortyOne.readCharacterAs('x', "00710301");
    addInvisible(fortyOne, std::string(41, 'x'));
    std::string expected;
    for (int i = 0; i < 41; ++i)
        expected += letter;
    EXPECT_EQ(read(fortyOne), expected);
}

TEST_F(PdfTextTest, FewCharactersOnEachOfManyPagesAreTheTextTogether)
{
    PdfWriter pdf;
    for (int i = 0; i < 21; ++i)
        pdf.addTextPage({"a"});
    std::string expected = "a";
    for (int i = 1; i < 21; ++i)
        expected += "\na";
    EXPECT_EQ(read(pdf), expected); // 21 letters and 20 line feeds
}

TEST_F(PdfTextTest, AScanIsRecognized)
{
    PdfWriter pdf;
    pdf.addScannedPage(scan(QStringLiteral("Minutes of the meeting")));
    EXPECT_EQ(read(pdf), "Minutes of the meeting");
}

TEST_F(PdfTextTest, TextOnNoGroundIsRecognizedAsOnWhitePaper)
{
    PdfWriter pdf;
    pdf.addPage("BT /F1 24 Tf 20 40 Td " + PdfWriter::shown("Black letters") + "ET", "250 100");
    EXPECT_EQ(read(pdf), "Black letters");
}

TEST_F(PdfTextTest, PagesRecognizedSideBySideReadAsOneByOne)
{
    PdfWriter pdf;
    std::string expected;
    for (const char* word : {"First", "Second", "Third", "Fourth", "Fifth", "Sixth"}) {
        pdf.addScannedPage(scan(QString::fromLatin1(word)));
        expected.append(expected.empty() ? "" : "\n\n").append(word);
    }
    EXPECT_EQ(read(pdf), expected);
}

TEST_F(PdfTextTest, EachPageIsToldOnceWithItsText)
{
    PdfWriter pdf;
    const std::vector<std::string> words = {"First", "Second", "", "Fourth"};
    for (const std::string& word : words) {
        if (word.empty())
            pdf.addPage("", "0.1 0.1");
        else
            pdf.addScannedPage(scan(QString::fromStdString(word)));
    }
    std::map<int, std::optional<std::string>> told;
    DocumentReader::readPDF(folder.write("document.pdf", pdf.bytes()),
                            [&](const DocumentReader::ScannedPage& page) {
                                EXPECT_EQ(page.count, 4);
                                EXPECT_TRUE(told.emplace(page.index, page.text).second);
                            });
    EXPECT_EQ(told, (std::map<int, std::optional<std::string>>{
                        {0, "First"}, {1, "Second"}, {2, std::nullopt}, {3, "Fourth"}}));
}

TEST_F(PdfTextTest, NoMoreThreadsAreStartedThanPagesAreRecognizedAtATime)
{
    const auto threads = [] {
        return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
    };
    PdfWriter pdf;
    const QImage page = scan(QStringLiteral("Chapter"));
    for (int i = 0; i < 6; ++i)
        pdf.addScannedPage(page);
    const std::filesystem::path file = folder.write("document.pdf", pdf.bytes());
    DocumentReader::readPDF(file); // Qt keeps threads for pictures, once it has needed them
    const auto before = threads();
    const auto others = PageRecognition::threadCount(std::thread::hardware_concurrency()) - 1;
    int pages = 0;
    DocumentReader::readPDF(file, [&](const DocumentReader::ScannedPage&) {
        ++pages;
        EXPECT_LE(threads(), before + others);
    });
    EXPECT_EQ(pages, 6);
    EXPECT_LE(threads(), before);
}

TEST_F(PdfTextTest, OnlyTheFirstFifteenPagesOfAScanAreRecognized)
{
    PdfWriter pdf;
    const QImage page = scan(QStringLiteral("Chapter"));
    for (int i = 0; i < 20; ++i)
        pdf.addScannedPage(page);
    std::string expected = "Chapter";
    for (int i = 1; i < 15; ++i)
        expected += "\n\nChapter";
    EXPECT_EQ(read(pdf), expected);
}

TEST_F(PdfTextTest, TheTextOfAnnotationsIsRecognized)
{
    for (const char* kind : {"FreeText", "Stamp"}) {
        PdfWriter pdf;
        pdf.addAnnotatedPage(kind, "BT /F1 24 Tf 2 10 Td " + PdfWriter::shown("Approved") + "ET");
        EXPECT_EQ(read(pdf), "Approved") << kind;
    }
}

TEST_F(PdfTextTest, WhatIsCroppedOfAPageIsRecognizedToo)
{
    PdfWriter pdf;
    pdf.addPage("BT /F1 24 Tf 150 200 Td " + PdfWriter::shown("Inside") +
                    "ET BT /F1 24 Tf 10 20 Td " + PdfWriter::shown("Outside") + "ET",
                "600 400]/CropBox[100 100 400 300");
    EXPECT_EQ(read(pdf), "Inside\nOutside");
}

TEST_F(PdfTextTest, ATurnedPageIsRecognizedUpright)
{
    PdfWriter pdf;
    pdf.addPage("BT 0 1 -1 0 100 40 Tm /F1 24 Tf " + PdfWriter::shown("Upright") + "ET",
                "200 300]/Rotate 90/X[");
    EXPECT_EQ(read(pdf), "Upright");
}

TEST_F(PdfTextTest, AnEmptyPageOfAScanKeepsItsSeparator)
{
    PdfWriter pdf;
    pdf.addPage("");
    pdf.addScannedPage(scan(QStringLiteral("Chapter")));
    pdf.addPage("");
    EXPECT_EQ(read(pdf), "\n\nChapter\n\n");
}

TEST_F(PdfTextTest, APageThatCannotBeDrawnIsSkippedWithoutASeparator)
{
    PdfWriter pdf;
    pdf.addPage("", "0.1 0.1");
    pdf.addScannedPage(scan(QStringLiteral("Chapter")));
    pdf.addPage("", "0.1 0.1");
    pdf.addScannedPage(scan(QStringLiteral("Appendix")));
    EXPECT_EQ(read(pdf), "Chapter\n\nAppendix");
}

TEST_F(PdfTextTest, ADocumentWithoutAPageThatCanBeDrawnIsEmpty)
{
    PdfWriter pdf;
    pdf.addPage("", "0.1 0.1");
    EXPECT_EQ(read(pdf), "");
}

TEST_F(PdfTextTest, APageOfAbsurdSizeIsDrawnSmaller)
{
    for (const char* size : {"20000 20000", "1000000000 1000000000", "1000000000 1"}) {
        PdfWriter pdf;
        pdf.addPage("", size);
        EXPECT_EQ(read(pdf), "") << size;
    }
}

TEST_F(PdfTextTest, BadPagesLeaveTheOthersReadable)
{
    PdfWriter pdf;
    pdf.addTextPage({longLine});
    pdf.addRawPage("null");
    pdf.addRawPage("<</Type/Page>>");
    pdf.addRawPage("[1 2 3]");
    pdf.addPage("BT /F1 12 Tf (unfinished \xFF\x00 ((( <</Q");
    pdf.addPage(std::string(1000, '\xFF'));
    EXPECT_TRUE(read(pdf).starts_with(longLine));
}

TEST_F(PdfTextTest, TenThousandPagesAreRead)
{
    constexpr std::size_t pages = 10000;
    PdfWriter pdf;
    std::string expected;
    for (std::size_t i = 0; i < pages; ++i) {
        const std::string line = "Page " + std::to_string(i);
        pdf.addTextPage({line});
        expected.append(i == 0 ? "" : "\n").append(line);
    }
    EXPECT_EQ(read(pdf), expected);
}

TEST_F(PdfTextTest, AnotherThreadMayRead)
{
    PdfWriter pdf;
    pdf.addTextPage({longLine});
    auto text = std::async(std::launch::async, [this, &pdf] { return read(pdf); });
    EXPECT_EQ(text.get(), longLine);
}

TEST_F(PdfTextTest, TwoThreadsMayReadAtOnce)
{
    PdfWriter pdf;
    pdf.addScannedPage(scan(QStringLiteral("Chapter")));
    const std::filesystem::path file = folder.write("scan.pdf", pdf.bytes());
    const auto reading = [&file] { return DocumentReader::readPDF(file); };
    auto first = std::async(std::launch::async, reading);
    auto second = std::async(std::launch::async, reading);
    EXPECT_EQ(first.get(), "Chapter");
    EXPECT_EQ(second.get(), "Chapter");
}

TEST_F(PdfTextTest, APasswordIsTooMuch)
{
    PdfWriter pdf;
    pdf.addTextPage({longLine});
    const std::string key = "<" + std::string(64, 'A') + ">";
    pdf.addToTrailer("/Encrypt<</Filter/Standard/V 1/R 2/P -4/O" + key + "/U" + key +
                     ">>/ID[<00><00>]");
    EXPECT_EQ(errorOf(pdf.bytes()), unopened);
}

TEST_F(PdfTextTest, WhatIsNoPdfCannotBeOpened)
{
    EXPECT_EQ(errorOf(""), unopened);
    EXPECT_EQ(errorOf("%"), unopened);
    EXPECT_EQ(errorOf("%PDF-1.7\n"), unopened);
    EXPECT_EQ(errorOf(std::string(5000, '\xFF')), unopened);
    EXPECT_EQ(errorOf(longLine), unopened);
}

TEST_F(PdfTextTest, ATruncatedPdfIsReadOrCannotBeOpened)
{
    PdfWriter pdf;
    pdf.addTextPage({longLine});
    const std::string whole = pdf.bytes();
    for (std::size_t size = 0; size < whole.size(); size += 7) {
        const std::filesystem::path file =
            folder.write("truncated.pdf", std::string_view(whole).substr(0, size));
        const std::string error =
            DocumentFolder::errorOf([&file] { return DocumentReader::readPDF(file); });
        EXPECT_TRUE(error == unopened || error == "no error") << size << ": " << error;
    }
}

TEST_F(PdfTextTest, WhatIsNoReadableFileCannotBeOpened)
{
    const auto read = [](const std::filesystem::path& file) {
        return DocumentFolder::errorOf([&file] { return DocumentReader::readPDF(file); });
    };
    EXPECT_EQ(read(folder.path()), unopened);
    EXPECT_EQ(read(folder.path() / "missing.pdf"), unopened);
    EXPECT_EQ(read("/dev/zero"), unopened);
    PdfWriter pdf;
    pdf.addTextPage({longLine});
    const std::filesystem::path file = folder.write("document.pdf", pdf.bytes());
    const std::string error =
        folder.errorWithoutPermission([&file] { return DocumentReader::readPDF(file); });
    EXPECT_EQ(error, unopened);
}

} // namespace
