#include "DocumentProcess.h"

#include "DocumentFolder.h"
#include "DocumentReader.h"
#include "Program.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <filesystem>

namespace {

class DocumentProcessTest : public testing::Test
{
protected:
    std::string read(const std::filesystem::path& file)
    {
        return DocumentProcess::read(file, Program::path().toStdString());
    }

    /// What is said of a program that does what the shell's `line` says.
    std::string errorOf(const std::string& line,
                        std::chrono::milliseconds limit = DocumentProcess::defaultLimit)
    {
        const std::filesystem::path program = m_folder.write("program", "#!/bin/sh\n" + line);
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
        return DocumentFolder::errorOf(
            [&] { return DocumentProcess::read("/file", program.native(), limit); });
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
    using namespace std::chrono_literals;
    EXPECT_EQ(errorOf("exec sleep 600", 50ms), "Reading the document takes too long.");
    EXPECT_EQ(errorOf("echo text; exec sleep 600", 50ms), "Reading the document takes too long.");
}

TEST_F(DocumentProcessTest, AProcessThatCrashesIsAnErrorInOneSentence)
{
    EXPECT_EQ(errorOf("echo text; kill -SEGV $$"), "Reading the document failed.");
    EXPECT_EQ(errorOf("echo text; exit 1"), "Reading the document failed.");
}

TEST_F(DocumentProcessTest, AProgramThatIsNotThereIsAnError)
{
    EXPECT_THROW(DocumentProcess::read("/file", (m_folder.path() / "missing").native()),
                 std::system_error);
}

} // namespace
