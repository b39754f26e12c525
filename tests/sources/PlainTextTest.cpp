#include "PlainText.h"

#include "DocumentFolder.h"
#include "RegularFile.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <memory>

namespace {

class PlainTextTest : public testing::Test
{
protected:
    std::string read(std::string_view bytes) const
    {
        return PlainText::read(folder.write("text.txt", bytes));
    }

    static std::string errorOf(const std::filesystem::path& file)
    {
        return DocumentFolder::errorOf([&file] { return PlainText::read(file); });
    }

    const DocumentFolder folder;
    const std::string unsupported = "Unsupported file type.";
};

TEST_F(PlainTextTest, Utf8IsReturnedAsItIs)
{
    EXPECT_EQ(read(" é 😀\r\n\t "), " é 😀\r\n\t ");
    EXPECT_EQ(read(std::string("a\0b", 3)), std::string("a\0b", 3));
}

TEST_F(PlainTextTest, AByteOrderMarkStays)
{
    EXPECT_EQ(read("\uFEFFtext"), "\uFEFFtext");
}

TEST_F(PlainTextTest, WhatIsNotUtf8IsLatin1)
{
    EXPECT_EQ(read("caf\xE9"), "café");
    EXPECT_EQ(read("caf\xC3"), "cafÃ");               // a character that is cut off
    EXPECT_EQ(read("\xC3\xA9\xFF"), "Ã©ÿ");           // all of it, not only the wrong byte
    EXPECT_EQ(read("\xED\xA0\x80"), "í\u00A0\u0080"); // a surrogate
    EXPECT_EQ(read("\xFF\xFE\x61"), "ÿþa");
}

TEST_F(PlainTextTest, AnEmptyFileIsEmptyText)
{
    EXPECT_EQ(read(""), "");
    EXPECT_EQ(read("x"), "x");
}

TEST_F(PlainTextTest, AFolderIsRefused)
{
    EXPECT_EQ(errorOf(folder.path()), unsupported);
}

TEST_F(PlainTextTest, AMissingFileIsRefused)
{
    EXPECT_EQ(errorOf(folder.path() / "missing.txt"), unsupported);
    EXPECT_EQ(errorOf(""), unsupported);
}

TEST_F(PlainTextTest, APipeIsRefusedWithoutWaitingForItsWriter)
{
    const std::filesystem::path pipe = folder.path() / "pipe.txt";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(errorOf(pipe), unsupported);
}

TEST_F(PlainTextTest, ADeviceIsRefused)
{
    EXPECT_EQ(errorOf("/dev/zero"), unsupported);
    EXPECT_EQ(errorOf("/dev/tty"), unsupported);
}

TEST_F(PlainTextTest, ASocketIsRefused)
{
    const std::filesystem::path path = folder.path() / "socket.txt";
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    path.string().copy(address.sun_path, sizeof address.sun_path - 1);
    const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM, 0));
    ASSERT_EQ(::bind(socket.value(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(errorOf(path), unsupported);
}

TEST_F(PlainTextTest, AFileThatMayNotBeReadIsRefused)
{
    const std::filesystem::path file = folder.write("text.txt", "text");
    EXPECT_EQ(folder.errorWithoutPermission([&file] { return PlainText::read(file); }),
              unsupported);
}

TEST_F(PlainTextTest, ALinkIsFollowed)
{
    const std::filesystem::path link = folder.path() / "link.txt";
    std::filesystem::create_symlink(folder.write("text.txt", "text"), link);
    EXPECT_EQ(PlainText::read(link), "text");
}

TEST_F(PlainTextTest, ALinkToItselfIsRefused)
{
    const std::filesystem::path link = folder.path() / "link.txt";
    std::filesystem::create_symlink(link, link);
    EXPECT_EQ(errorOf(link), unsupported);
}

TEST_F(PlainTextTest, AFileThatTellsNoSizeIsReadToItsEnd)
{
    EXPECT_NE(PlainText::read(std::filesystem::path("/proc/self/status")).find("VmPeak"),
              std::string::npos);
}

TEST_F(PlainTextTest, AFileThatVanishesWhileItIsReadIsReadToItsEnd)
{
    const std::filesystem::path path = folder.write("text.txt", "text");
    const std::optional<RegularFile> file = RegularFile::open(path);
    ASSERT_TRUE(file);
    std::filesystem::remove(path);
    EXPECT_EQ(file->bytes(), "text");
}

TEST_F(PlainTextTest, AFileThatChangesItsSizeIsReadAsItIsThen)
{
    const std::filesystem::path path = folder.write("text.txt", "some text");
    const std::optional<RegularFile> file = RegularFile::open(path);
    ASSERT_TRUE(file);
    folder.write("text.txt", "text");
    EXPECT_EQ(file->bytes(), "text");
    const std::string longer(100'000, 'x');
    folder.write("text.txt", longer);
    EXPECT_EQ(file->bytes(), longer);
}

TEST_F(PlainTextTest, AnInterruptionBeforeTheReadingDoesNotMatter)
{
    const std::optional<RegularFile> file = RegularFile::open(folder.write("text.txt", "text"));
    ASSERT_TRUE(file);
    errno = EINTR;
    EXPECT_EQ(file->bytes(), "text");
}

TEST_F(PlainTextTest, AFileOfMoreThanAGibibyteIsRefusedBeforeItIsRead)
{
    const std::filesystem::path path = folder.write("text.txt", "");
    std::filesystem::resize_file(path, RegularFile::mostBytes + 1);
    EXPECT_EQ(errorOf(path), "The text is longer than 1 GiB.");
}

TEST_F(PlainTextTest, AStreamIsReadToItsEnd)
{
    const std::string text = std::string(100'000, 'x') + "é";
    const std::filesystem::path path = folder.write("text.txt", text);
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream(std::fopen(path.c_str(), "rb"),
                                                                 std::fclose);
    ASSERT_TRUE(stream);
    EXPECT_EQ(PlainText::read(*stream), text);
    EXPECT_EQ(PlainText::read(*stream), "");
}

TEST_F(PlainTextTest, AStreamThatCannotBeReadIsAnError)
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream(
        std::fopen(folder.path().c_str(), "rb"), std::fclose);
    ASSERT_TRUE(stream);
    EXPECT_EQ(DocumentFolder::errorOf([&stream] { return PlainText::read(*stream); }),
              "The text could not be read.");
}

} // namespace
