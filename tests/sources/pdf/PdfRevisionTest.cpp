#include "PdfRevision.h"

#include "DocumentFolder.h"
#include "DocumentReader.h"
#include "FileDescriptor.h"
#include "PdfWriter.h"
#include "TextImage.h"

#include <fcntl.h>
#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;

class PdfRevisionTest : public testing::Test
{
protected:
    std::string read(std::string_view pdf) const
    {
        return DocumentReader::readPDF(m_folder.write("form.pdf", pdf));
    }

    /// A page with a field that says "Jane Doe", drawn as `appearance` if that is not empty.
    std::string form(std::string_view appearance, std::string_view entries = "") const
    {
        PdfWriter pdf;
        pdf.addFormPage({m_line}, "(Jane Doe)", appearance, entries);
        return pdf.bytes();
    }

    /// Whether something is drawn for the form.
    bool isDrawn(std::string_view pdf) const
    {
        const FileDescriptor file(::open(m_folder.write("form.pdf", pdf).c_str(), O_RDONLY));
        return PdfRevision(file.value()).drawForm();
    }

    static std::string drawn(std::string_view value)
    {
        return "BT /F1 24 Tf 2 10 Td " + PdfWriter::shown(value) + "ET";
    }

    const DocumentFolder m_folder;
    const std::string m_line = "Whoever applies for the grant gives a name:";
};

TEST_F(PdfRevisionTest, WhatIsFilledInIsReadAsItIsDrawn)
{
    EXPECT_EQ(read(form(drawn("Ms Jane Doe"))), m_line + "\nMs Jane Doe");
}

TEST_F(PdfRevisionTest, WhatOnlyAViewerWouldDrawIsReadToo)
{
    EXPECT_EQ(read(form("")), m_line + "\nJane Doe");
}

TEST_F(PdfRevisionTest, WhatCannotBeSeenIsNotRead)
{
    EXPECT_EQ(read(form(drawn("Jane Doe"), "/F 2")), m_line);
}

TEST_F(PdfRevisionTest, TheFieldsOfAScanAreRecognized)
{
    PdfWriter pdf;
    pdf.addFormPage({}, "(Jane Doe)", drawn("Jane Doe"));
    EXPECT_EQ(read(pdf.bytes()), "Jane Doe");
}

TEST_F(PdfRevisionTest, ADocumentWithoutAFormIsReadAsItIs)
{
    PdfWriter pdf;
    pdf.addTextPage({m_line});
    EXPECT_FALSE(isDrawn(pdf.bytes()));
    pdf.addToCatalog("/AcroForm<</Fields[]>>");
    EXPECT_FALSE(isDrawn(pdf.bytes()));
    EXPECT_TRUE(isDrawn(form("")));
}

TEST_F(PdfRevisionTest, ABadFormLeavesTheTextOfThePage)
{
    for (const char* bad :
         {"/AcroForm 1 0 R", "/AcroForm<</Fields[1 0 R 2 0 R 999 0 R null 7]>>",
          "/AcroForm<</Fields[<</Kids[1 0 R]/FT/Tx/V[[[[(a)]]]]>>]/NeedAppearances true>>",
          "/AcroForm<</Fields 3 0 R/DR 7/DA<<>>>>"}) {
        PdfWriter pdf;
        pdf.addTextPage({m_line});
        pdf.addToCatalog(bad);
        EXPECT_EQ(read(pdf.bytes()), m_line) << bad;
    }
    const std::string good = form("");
    for (const char* word : {"/Rect", "/DA", "/FT/Tx", "/Subtype/Widget", "/T(field)", "/DR"}) {
        std::string damaged = good;
        damaged.replace(damaged.find(word), 2, "/Z");
        EXPECT_THAT(read(damaged), HasSubstr(m_line)) << word;
    }
}

TEST_F(PdfRevisionTest, ATruncatedFormIsReadOrCannotBeOpened)
{
    const std::string whole = form(drawn("Jane Doe"));
    for (std::size_t length = 0; length < whole.size(); length += 97) {
        const std::filesystem::path file =
            m_folder.write("form.pdf", std::string_view(whole).substr(0, length));
        const std::string error =
            DocumentFolder::errorOf([&file] { return DocumentReader::readPDF(file); });
        EXPECT_THAT(error, testing::AnyOf("", "Could not open the PDF.", "no error")) << length;
    }
}

TEST_F(PdfRevisionTest, AThousandFieldsAreRead)
{
    PdfWriter pdf;
    for (int i = 0; i < 1'000; ++i)
        pdf.addFormPage({m_line}, "(Jane Doe)", "");
    const std::string text = read(pdf.bytes());
    std::size_t count = 0;
    for (std::size_t at = text.find("Jane"); at != std::string::npos;
         at = text.find("Jane", at + 1))
        ++count;
    EXPECT_EQ(count, 1'000U);
}

} // namespace
