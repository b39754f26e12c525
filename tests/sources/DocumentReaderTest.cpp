#include "DocumentReader.h"

#include "DocumentFolder.h"
#include "PdfWriter.h"
#include "ZipWriter.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <atomic>
#include <future>

namespace {

const std::string anyError = "any error";

struct Kind
{
    std::string extension;
    std::string error; // of what is not of this kind
};

const std::vector<Kind> kinds = {
    {"pdf", "Could not open the PDF."},
    {"docx", "Could not read the DOCX file."},
    {"rtf", anyError},
    {"rtfd", anyError},
    {"png", "Could not read the image."},
    {"jpg", "Could not read the image."},
    {"jpeg", "Could not read the image."},
    {"heic", "Could not read the image."},
    {"tif", "Could not read the image."},
    {"tiff", "Could not read the image."},
    {"gif", "Could not read the image."},
    {"bmp", "Could not read the image."},
};

std::string pdf()
{
    PdfWriter writer;
    writer.addTextPage({"This is the text of a document for printing."});
    return writer.bytes();
}

class DocumentReaderTest : public testing::Test
{
protected:
    static std::string errorOf(const std::filesystem::path& file)
    {
        return DocumentFolder::errorOf([&file] { return DocumentReader::read(file); });
    }

    /// That the file fails with the sentence of its kind.
    static void expectError(const std::filesystem::path& file, const Kind& kind)
    {
        const std::string error = errorOf(file);
        if (kind.error != anyError) {
            EXPECT_EQ(error, kind.error) << file;
            return;
        }
        EXPECT_NE(error, "no error") << file;
        EXPECT_NE(error, "") << file;
        EXPECT_FALSE(error.starts_with("not an AppError")) << file << error;
    }

    void expectErrors(std::string_view bytes) const
    {
        for (const Kind& kind : kinds)
            expectError(folder.write("file." + kind.extension, bytes), kind);
    }

    const DocumentFolder folder;
    const std::string printed = "This is the text of a document for printing.";
};

TEST_F(DocumentReaderTest, TheExtensionChoosesTheReader)
{
    EXPECT_EQ(DocumentReader::read(folder.write("report.pdf", pdf())), printed);
    EXPECT_EQ(DocumentReader::read(folder.write("a.docx", ZipWriter::document("a</w:p>"))), "a\n");
    EXPECT_EQ(DocumentReader::read(folder.write("a.rtf", R"({\rtf1 Rich})")), "Rich");
}

TEST_F(DocumentReaderTest, TheExtensionMayBeInCapitals)
{
    EXPECT_EQ(DocumentReader::read(folder.write("Report.PDF", pdf())), printed);
    EXPECT_EQ(DocumentReader::read(folder.write("A.DocX", ZipWriter::document("a"))), "a");
    expectError(folder.write("photo.JPEG", "x"), kinds[6]);
}

TEST_F(DocumentReaderTest, EveryOtherFileIsPlainText)
{
    for (const char* name : {"notes.markdown", "README", "page.html", "old.doc", "file.", "pdf",
                             "a.pdf.txt", "a.pdf ", "a.docx~", ".hidden", "docx", "a.pd"})
        EXPECT_EQ(DocumentReader::read(folder.write(name, "\uFEFF <b>&amp;\xE2\x82\xAC</b>\r\n")),
                  "\uFEFF <b>&amp;€</b>\r\n")
            << name;
    EXPECT_EQ(DocumentReader::read(folder.write("latin.txt", "\xE9")), "é");
}

TEST_F(DocumentReaderTest, WhatFollowsTheLastDotIsTheExtension)
{
    EXPECT_EQ(DocumentReader::read(folder.write("a.txt.pdf", pdf())), printed);
    EXPECT_EQ(DocumentReader::read(folder.write(".pdf", pdf())), printed);
    std::filesystem::create_directory(folder.path() / "folder.pdf");
    EXPECT_EQ(DocumentReader::read(folder.write("folder.pdf/README", "text")), "text");
}

TEST_F(DocumentReaderTest, TheContentChoosesNoReader)
{
    EXPECT_TRUE(DocumentReader::read(folder.write("a.txt", pdf())).starts_with("%PDF-1.7"));
    expectErrors("Only plain text.");
    for (const Kind& kind : kinds) {
        if (kind.extension != "pdf")
            expectError(folder.write("wrong." + kind.extension, pdf()), kind);
        if (kind.extension != "docx")
            expectError(folder.write("wrong." + kind.extension, ZipWriter::document("a")), kind);
    }
}

TEST_F(DocumentReaderTest, AnEmptyFileIsOnlyText)
{
    EXPECT_EQ(DocumentReader::read(folder.write("empty.txt", "")), "");
    expectErrors("");
}

TEST_F(DocumentReaderTest, OneByteIsOnlyText)
{
    EXPECT_EQ(DocumentReader::read(folder.write("one.txt", "\xFF")), "ÿ");
    for (const char* byte : {"{", "%", "P", "\x89", "\xFF"})
        expectErrors(byte);
}

TEST_F(DocumentReaderTest, BytesOf255AreOnlyText)
{
    expectErrors(std::string(100'000, '\xFF'));
    EXPECT_EQ(DocumentReader::read(folder.write("a.txt", std::string(2, '\xFF'))), "ÿÿ");
}

TEST_F(DocumentReaderTest, MissingFilesAreRefused)
{
    EXPECT_EQ(errorOf(folder.path() / "missing.txt"), "Unsupported file type.");
    for (const Kind& kind : kinds)
        expectError(folder.path() / ("missing." + kind.extension), kind);
}

TEST_F(DocumentReaderTest, FoldersAreRefused)
{
    std::filesystem::create_directory(folder.path() / "folder.txt");
    EXPECT_EQ(errorOf(folder.path() / "folder.txt"), "Unsupported file type.");
    EXPECT_EQ(errorOf(folder.path() / "folder.txt/"), "Unsupported file type.");
    for (const Kind& kind : kinds) {
        const std::filesystem::path path = folder.path() / ("folder." + kind.extension);
        std::filesystem::create_directory(path);
        expectError(path, kind);
        expectError(path / "", kind); // with a slash at the end
    }
}

TEST_F(DocumentReaderTest, PipesAreRefusedWithoutWaiting)
{
    for (const Kind& kind : kinds) {
        const std::filesystem::path path = folder.path() / ("pipe." + kind.extension);
        ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
        expectError(path, kind);
    }
}

TEST_F(DocumentReaderTest, FilesThatMayNotBeReadAreRefused)
{
    for (const Kind& kind : kinds) {
        const std::filesystem::path file = folder.write("a." + kind.extension, pdf());
        const std::string error =
            folder.errorWithoutPermission([&file] { return DocumentReader::read(file); });
        EXPECT_NE(error, "no error");
        EXPECT_TRUE(kind.error == anyError || error == kind.error) << kind.extension << error;
    }
}

TEST_F(DocumentReaderTest, NamesMayHoldAnything)
{
    for (const char* name : {"line\nfeed", "😀 emoji", "not utf-8 \xFF", "%20&?#", " "}) {
        const std::string base = name;
        EXPECT_EQ(DocumentReader::read(folder.write(base, "text")), "text") << name;
        EXPECT_EQ(DocumentReader::read(folder.write(base + ".pdf", pdf())), printed) << name;
        const std::string docx = ZipWriter::document("text");
        EXPECT_EQ(DocumentReader::read(folder.write(base + ".docx", docx)), "text") << name;
    }
}

TEST_F(DocumentReaderTest, AFileThatComesAndGoesIsReadOrRefused)
{
    const std::string content = pdf();
    std::atomic<bool> isDone = false;
    auto writing = std::async(std::launch::async, [this, &content, &isDone] {
        while (!isDone) {
            const std::filesystem::path file = folder.write("new", content);
            std::filesystem::rename(file, folder.path() / "a.pdf");
            std::filesystem::remove(folder.path() / "a.pdf");
        }
    });
    for (int round = 0; round < 200; ++round) {
        try {
            EXPECT_EQ(DocumentReader::read(folder.path() / "a.pdf"), printed);
        } catch (const AppError& error) {
            EXPECT_EQ(error.message(), "Could not open the PDF.");
        }
    }
    isDone = true;
    writing.get();
}

} // namespace
