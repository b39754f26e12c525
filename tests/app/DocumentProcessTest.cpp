#include "DocumentProcess.h"

#include "DocumentFolder.h"
#include "DocumentReader.h"
#include "PageRecord.h"
#include "PdfWriter.h"
#include "Program.h"
#include "WaitUntil.h"

#include <QElapsedTimer>

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <future>
#include <iterator>
#include <thread>
#include <vector>

namespace {

using namespace std::chrono_literals;

class DocumentProcessTest : public testing::Test
{
protected:
    std::string read(const std::filesystem::path& file)
    {
        return DocumentProcess::read(file, Program::path().toStdString()).text;
    }

    /// What a program reads that does what the shell's `line` says.
    DocumentText readBy(const std::string& line,
                        std::chrono::milliseconds limit = DocumentProcess::defaultLimit)
    {
        const std::filesystem::path program = m_folder.write("program", "#!/bin/sh\n" + line);
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
        return DocumentProcess::read("/file", program.native(), limit);
    }

    /// What is said of such a program.
    std::string errorOf(const std::string& line,
                        std::chrono::milliseconds limit = DocumentProcess::defaultLimit)
    {
        return DocumentFolder::errorOf([&] { return readBy(line, limit).text; });
    }

    /// A line that writes what is there in the end of the pages of those indices, of fifteen.
    std::string pages(std::initializer_list<int> indices)
    {
        std::string records;
        for (const int index : indices)
            records += PageRecord::written({index, 15, "Text " + std::to_string(index)});
        return "cat '" + m_folder.write("pages", records).native() + "'; ";
    }

    /// The numbers in `file`, a line each.
    static std::vector<std::size_t> counts(const std::filesystem::path& file)
    {
        std::ifstream stream(file);
        return {std::istream_iterator<std::size_t>(stream), {}};
    }

    DocumentFolder m_folder;
};

TEST_F(DocumentProcessTest, TheTextIsTheReadersByteForByte)
{
    for (const std::string& text :
         {std::string(), std::string(" \n\t"), std::string("no end"), std::string("end\n"),
          std::string("\uFEFFna\0ïve \x1B[31m\r\n", 18), std::string("na\xEFve"),
          std::string(3'000'000, 'x')}) {
        const std::filesystem::path file = m_folder.write("text.txt", text);
        EXPECT_EQ(read(file), DocumentReader::read(file));
    }
}

TEST_F(DocumentProcessTest, TheErrorIsTheReaders)
{
    const std::vector<std::filesystem::path> files = {
        m_folder.path(), m_folder.path() / "missing", m_folder.write("bad.pdf", "%PDF-1.4 no"),
        m_folder.write("bad.docx", "PK"), m_folder.write("bad.png", "\x89PNG")};
    for (const std::filesystem::path& file : files) {
        EXPECT_EQ(DocumentFolder::errorOf([&] { return read(file); }),
                  DocumentFolder::errorOf([&] { return DocumentReader::read(file); }))
            << file;
    }
}

TEST_F(DocumentProcessTest, AnyNameOfAFileWillDo)
{
    for (const char* name : {"--help", "-", "a b\n👩.txt", "na\xEFve.txt", "'$(x)'"})
        EXPECT_EQ(read(m_folder.write(name, "text")), "text") << name;
}

TEST_F(DocumentProcessTest, ARelativePathIsFromTheWorkingFolder)
{
    const std::filesystem::path before = std::filesystem::current_path();
    m_folder.write("-x.txt", "text");
    std::filesystem::current_path(m_folder.path());
    EXPECT_EQ(read("-x.txt"), "text");
    std::filesystem::current_path(before);
}

TEST_F(DocumentProcessTest, AProcessThatTakesTooLongIsEnded)
{
    EXPECT_EQ(errorOf("exec sleep 600", 50ms), "Reading the document takes too long.");
    EXPECT_EQ(errorOf("echo text; exec sleep 600", 50ms), "Reading the document takes too long.");
}

TEST_F(DocumentProcessTest, AScanIsReadAsByTheReader)
{
    PdfWriter pdf;
    for (const char* word : {"First", "Second", "Third"}) // too little for a text layer
        pdf.addPage("BT /F1 24 Tf 20 40 Td " + PdfWriter::shown(word) + "ET", "250 100");
    pdf.addPage("", "0.1 0.1");
    const std::filesystem::path file = m_folder.write("scan.pdf", pdf.bytes());
    const DocumentText text = DocumentProcess::read(file, Program::path().toStdString());
    EXPECT_EQ(text.text, DocumentReader::read(file));
    EXPECT_EQ(text.text, "First\n\nSecond\n\nThird");
    EXPECT_EQ(text.share, "");
}

TEST_F(DocumentProcessTest, WhatWasRecognisedUntilTheLimitIsUsedWithItsShare)
{
    const DocumentText text = readBy(pages({1, 0, 3}) + "exec sleep 600", 1s);
    EXPECT_EQ(text.text, "Text 0\n\nText 1\n\nText 3");
    EXPECT_EQ(text.share, "pages 1–2, 4 of 15");
}

TEST_F(DocumentProcessTest, HalfAPageAtTheLimitIsLeftOut)
{
    const std::string half = PageRecord::written({1, 15, std::string(100, 'x')}).substr(0, 50);
    const std::string line = pages({0}) + "cat '" + m_folder.write("half", half).native() + "'; ";
    const DocumentText text = readBy(line + "exec sleep 600", 1s);
    EXPECT_EQ(text.text, "Text 0");
    EXPECT_EQ(text.share, "page 1 of 15");
}

TEST_F(DocumentProcessTest, TheLimitIsForEachPageNotForAll)
{
    std::string line;
    for (int i = 0; i < 15; ++i) {
        const std::string name = "page" + std::to_string(i);
        const auto page = m_folder.write(name, PageRecord::written({i, 15, "x"}));
        line += "sleep 0.2; cat '" + page.native() + "'; ";
    }
    EXPECT_EQ(readBy(line + "exit 4", 2s).share, "");
}

TEST_F(DocumentProcessTest, AScanWithoutAPageAtTheLimitIsAnError)
{
    EXPECT_EQ(errorOf("printf '\\036page 0 15'; exec sleep 600", 50ms),
              "Reading the document takes too long.");
}

TEST_F(DocumentProcessTest, AnErrorAmongPagesIsTheReaders)
{
    EXPECT_EQ(errorOf(pages({0, 1}) + "printf 'The recogniser is tired.'; exit 3"),
              "The recogniser is tired.");
    EXPECT_EQ(errorOf(pages({0, 1}) + "kill -SEGV $$"), "Reading the document failed.");
}

TEST_F(DocumentProcessTest, AProcessThatCrashesIsAnErrorInOneSentence)
{
    EXPECT_EQ(errorOf("echo text; kill -SEGV $$"), "Reading the document failed.");
    EXPECT_EQ(errorOf("echo text; exit 1"), "Reading the document failed.");
}

#ifndef PITHWISE_SANITIZED
TEST_F(DocumentProcessTest, ItsMemoryIsLimited)
{
    EXPECT_THAT(read("/proc/self/limits"),
                testing::ContainsRegex("Max data size +4294967296 +4294967296 "));
}
#endif

TEST_F(DocumentProcessTest, AsManyGoOnAtOnceAsThereAreProcessors)
{
    const std::size_t most = std::max(std::thread::hardware_concurrency(), 1U);
    const std::filesystem::path folder = m_folder.path();
    std::filesystem::create_directory(folder / "running");
    const std::filesystem::path program =
        m_folder.write("program", "#!/bin/sh\n"
                                  "cd '" +
                                      folder.native() +
                                      "'\n"
                                      "touch running/$$; ls running | wc -l >> counts\n"
                                      "while [ ! -e go ]; do sleep 0.01; done\n"
                                      "rm running/$$; printf text\n");
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    std::vector<std::future<std::string>> reads;
    for (std::size_t i = 0; i < 3 * most; ++i)
        reads.push_back(std::async(std::launch::async, [&] {
            return DocumentProcess::read("/file", program.native()).text;
        }));
    ASSERT_TRUE(waitUntil([&] { return counts(folder / "counts").size() >= most; }));
    m_folder.write("go", "");
    for (std::future<std::string>& read : reads)
        EXPECT_EQ(read.get(), "text");
    EXPECT_EQ(counts(folder / "counts").size(), 3 * most);
    EXPECT_EQ(std::ranges::max(counts(folder / "counts")), most);
}

TEST_F(DocumentProcessTest, AProgramThatIsNotThereIsAnError)
{
    EXPECT_THROW(DocumentProcess::read("/file", (m_folder.path() / "missing").native()),
                 std::system_error);
}

} // namespace
