#include "DocxText.h"

#include "DocumentFolder.h"
#include "DocumentReader.h"
#include "ZipMember.h"
#include "ZipWriter.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <random>

namespace {

using DocxText::plainText;

TEST(DocxTextTest, ParagraphsEndInLineFeeds)
{
    EXPECT_EQ(plainText("a</w:p>b"), "a\nb");
    EXPECT_EQ(plainText("<w:p><w:r><w:t>One</w:t></w:r></w:p><w:p></w:p><w:p>Two</w:p>"),
              "One\n\nTwo\n");
}

TEST(DocxTextTest, TabsAndLineBreaksAreKept)
{
    EXPECT_EQ(plainText("a<w:tab/>b<w:br/>c"), "a\tb\nc");
}

TEST(DocxTextTest, OtherFormsOfTabsAndLineBreaksDisappear)
{
    EXPECT_EQ(plainText("a<w:tab />b<w:br w:type=\"page\"/>c<W:BR/>d<w:tab></w:tab>e</w:p >f"),
              "abcdef");
}

TEST(DocxTextTest, TagsMayRunOverLines)
{
    EXPECT_EQ(plainText("a<w:r\n w:x='1'\r\n>b"), "ab");
}

TEST(DocxTextTest, AMarkInsideATagIsReplacedFirst)
{
    EXPECT_EQ(plainText("a<w:x </w:p>b>c"), "ac");
    EXPECT_EQ(plainText("a<</w:p>b"), "a<\nb");
    EXPECT_EQ(plainText("<w:t<w:br/>ab/>c"), "c");
}

TEST(DocxTextTest, CharacterReferencesAreDecodedAfterTheTags)
{
    EXPECT_EQ(plainText("Tom &amp; Jerry &lt;b&gt; &#65;"), "Tom & Jerry <b> A");
}

TEST(DocxTextTest, NothingIsTrimmed)
{
    EXPECT_EQ(plainText("  a  </w:p></w:p>\n"), "  a  \n\n\n");
}

TEST(DocxTextTest, UnfinishedMarksStay)
{
    EXPECT_EQ(plainText("a</w:p"), "a</w:p");
    EXPECT_EQ(plainText("a<"), "a<");
    EXPECT_EQ(plainText("<>"), "<>");
    EXPECT_EQ(plainText(""), "");
}

std::string replaced(std::string text, std::string_view from, std::string_view to)
{
    std::size_t i = 0;
    while ((i = text.find(from, i)) != std::string::npos) {
        text.replace(i, from.size(), to);
        i += to.size();
    }
    return text;
}

TEST(DocxTextTest, TheMarksAreReplacedAsOneAfterTheOther)
{
    std::mt19937 random(5);
    const std::vector<std::string> pieces = {"</w:p>", "<w:tab/>", "<w:br/>", "<",   "/w:p>", "w:",
                                             "<w:tab", "/>",       "<w:b",    "r/>", "x",     "é"};
    for (int round = 0; round < 20000; ++round) {
        std::string xml;
        for (std::size_t count = random() % 12; count > 0; --count)
            xml += pieces[random() % pieces.size()];
        const std::string paragraphs = replaced(xml, "</w:p>", "\n");
        const std::string stepByStep =
            replaced(replaced(paragraphs, "<w:tab/>", "\t"), "<w:br/>", "\n");
        ASSERT_EQ(plainText(xml), plainText(stepByStep)) << xml;
    }
}

class DocxFileTest : public testing::Test
{
protected:
    std::string read(std::string_view bytes) const
    {
        return DocumentReader::readDOCX(folder.write("document.docx", bytes));
    }

    std::string errorOf(std::string_view bytes) const
    {
        return DocumentFolder::errorOf([this, bytes] { return read(bytes); });
    }

    const DocumentFolder folder;
    const std::string unread = "Could not read the DOCX file.";
};

TEST_F(DocxFileTest, TheMainPartIsTheText)
{
    ZipWriter zip;
    zip.add("[Content_Types].xml", "<Types/>");
    zip.add("word/document.xml.rels", "wrong");
    zip.add("Word/Document.xml", "wrong");
    zip.add("word/document.xml", "<w:p>Größe 😀 &amp; more</w:p>");
    zip.add("word/styles.xml", "wrong");
    EXPECT_EQ(read(zip.bytes()), "Größe 😀 & more\n");
}

TEST_F(DocxFileTest, AnotherMembersNameMayBeNoText)
{
    ZipWriter zip;
    zip.add("\xE9.png", "picture");
    zip.add("word/document.xml", "text");
    std::string bytes = zip.bytes();
    // Calls the first name UTF-8, where it is and in the table of contents.
    bytes.at(bytes.find("PK\x03\x04") + 7) |= 0x08;
    bytes.at(bytes.find("PK\x01\x02") + 9) |= 0x08;
    EXPECT_EQ(read(bytes), "text");
}

TEST_F(DocxFileTest, TheFirstOfSeveralMainPartsIsTaken)
{
    ZipWriter zip;
    zip.add("word/document.xml", "first");
    zip.add("word/document.xml", "second");
    EXPECT_EQ(read(zip.bytes()), "first");
}

TEST_F(DocxFileTest, AMainPartThatIsOnlyStoredIsRead)
{
    EXPECT_EQ(read(ZipWriter::document("a</w:p>b", ZipWriter::Method::store)), "a\nb");
}

TEST_F(DocxFileTest, AByteOrderMarkStays)
{
    EXPECT_EQ(read(ZipWriter::document("\uFEFFa")), "\uFEFFa");
}

TEST_F(DocxFileTest, AMainPartWithoutTextIsEmptyText)
{
    EXPECT_EQ(read(ZipWriter::document("<w:document/>")), "");
}

TEST_F(DocxFileTest, AManyMemberedArchiveIsRead)
{
    ZipWriter zip(ZipWriter::Method::store);
    for (int i = 0; i < 5000; ++i)
        zip.add("media/" + std::to_string(i), "x");
    zip.add("word/document.xml", "text");
    EXPECT_EQ(read(zip.bytes()), "text");
}

TEST_F(DocxFileTest, WhatIsNoArchiveCannotBeRead)
{
    EXPECT_EQ(errorOf(""), unread);
    EXPECT_EQ(errorOf("P"), unread);
    EXPECT_EQ(errorOf("PK"), unread);
    EXPECT_EQ(errorOf(std::string(5000, '\xFF')), unread);
    EXPECT_EQ(errorOf("<w:p>Only text</w:p>"), unread);
}

TEST_F(DocxFileTest, AnArchiveWithoutAMainPartCannotBeRead)
{
    ZipWriter other;
    other.add("word/styles.xml", "x");
    EXPECT_EQ(errorOf(other.bytes()), unread);
    EXPECT_EQ(errorOf(ZipWriter().bytes()), unread);
}

TEST_F(DocxFileTest, AnEmptyMainPartCannotBeRead)
{
    EXPECT_EQ(errorOf(ZipWriter::document("")), unread);
}

TEST_F(DocxFileTest, AMainPartThatIsNotUtf8CannotBeRead)
{
    EXPECT_EQ(errorOf(ZipWriter::document("caf\xE9")), unread);
    EXPECT_EQ(errorOf(ZipWriter::document("caf\xC3")), unread);
    EXPECT_EQ(errorOf(ZipWriter::document("\xED\xA0\x80")), unread);
}

TEST_F(DocxFileTest, AnEncryptedMainPartCannotBeRead)
{
    EXPECT_EQ(errorOf(ZipWriter::document("secret", ZipWriter::Method::encrypt)), unread);
}

TEST_F(DocxFileTest, AMainPartWithAWrongChecksumIsRead)
{
    for (const auto method : {ZipWriter::Method::store, ZipWriter::Method::deflate}) {
        std::string zip = ZipWriter::document("one text", method);
        for (const std::size_t place : {zip.find("PK\x03\x04") + 14, zip.rfind("PK\x01\x02") + 16})
            zip.replace(place, 4, "\x12\x34\x56\x78");
        EXPECT_EQ(read(zip), "one text");
    }
    std::string zip = ZipWriter::document("one text", ZipWriter::Method::store);
    zip.replace(zip.find("one text"), 3, "two");
    EXPECT_EQ(read(zip), "two text");
}

TEST_F(DocxFileTest, ADamagedMainPartCannotBeRead)
{
    std::string zip = ZipWriter::document("one text");
    constexpr std::size_t header = 30; // and a name and more, of the lengths that it tells
    const std::size_t data =
        header + static_cast<unsigned char>(zip.at(26)) + static_cast<unsigned char>(zip.at(28));
    zip.at(data) = '\x07'; // a kind of block that there is not
    EXPECT_EQ(errorOf(zip), unread);
}

TEST_F(DocxFileTest, ATruncatedArchiveCannotBeRead)
{
    const std::string whole = ZipWriter::document(std::string(100, 'x'));
    for (std::size_t size = 0; size < whole.size(); ++size)
        ASSERT_EQ(errorOf(std::string_view(whole).substr(0, size)), unread) << size;
}

TEST_F(DocxFileTest, AChangedByteMakesTheTextNeitherLongerNorShorter)
{
    const std::string text = "some text";
    const std::string whole = ZipWriter::document(text);
    for (std::size_t i = 0; i < whole.size(); ++i) {
        std::string changed = whole;
        changed[i] = static_cast<char>(changed[i] ^ 0x55);
        const std::string xml = ZipMember::read(changed, "word/document.xml").value_or("");
        EXPECT_TRUE(xml.empty() || xml.size() == text.size()) << i << ": " << xml;
    }
}

TEST_F(DocxFileTest, AMainPartLongerThanToldCannotBeRead)
{
    const std::string zip = ZipWriter::document(std::string(100'000, 'x'));
    EXPECT_EQ(errorOf(ZipWriter::withToldSize(zip, 10)), unread);
}

TEST_F(DocxFileTest, AMainPartOfMoreThanAGibibyteIsRefusedBeforeItIsUnpacked)
{
    constexpr std::uint64_t gibibyte = std::uint64_t{1} << 30;
    ZipWriter zip;
    zip.addZeros("word/document.xml", gibibyte + 1);
    const std::string bytes = zip.bytes();
    ASSERT_LT(bytes.size(), std::size_t{2} << 20);

    rusage before = {};
    rusage after = {};
    ASSERT_EQ(::getrusage(RUSAGE_SELF, &before), 0);
    EXPECT_EQ(errorOf(bytes), unread);
    ASSERT_EQ(::getrusage(RUSAGE_SELF, &after), 0);
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 64 * 1024); // KiB
    // Nor is a smaller size believed where the content goes on beyond it.
    EXPECT_EQ(errorOf(ZipWriter::withToldSize(bytes, 1000)), unread);
    ASSERT_EQ(::getrusage(RUSAGE_SELF, &after), 0);
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 64 * 1024);
}

TEST_F(DocxFileTest, WhatIsNoReadableFileCannotBeRead)
{
    const auto read = [](const std::filesystem::path& file) {
        return DocumentFolder::errorOf([&file] { return DocumentReader::readDOCX(file); });
    };
    EXPECT_EQ(read(folder.path()), unread);
    EXPECT_EQ(read(folder.path() / "missing.docx"), unread);
    EXPECT_EQ(read("/dev/zero"), unread);
    const std::filesystem::path file = folder.write("a.docx", ZipWriter::document("text"));
    const std::string error =
        folder.errorWithoutPermission([&file] { return DocumentReader::readDOCX(file); });
    EXPECT_EQ(error, unread);
}

} // namespace
