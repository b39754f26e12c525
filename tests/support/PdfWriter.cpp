#include "PdfWriter.h"

#include <QImage>

#include <array>
#include <cstdio>

// The objects that every document has; the others follow.
static constexpr std::size_t fontNumber = 3;
static constexpr std::size_t firstNumber = 5;

std::string PdfWriter::reference(std::size_t number)
{
    return std::to_string(number).append(" 0 R");
}

PdfWriter::Object PdfWriter::stream(std::string_view dictionary, std::string_view data)
{
    std::string object = "<<";
    object.append(dictionary).append("/Length ").append(std::to_string(data.size()));
    return object.append(">>stream\n").append(data).append("\nendstream");
}

std::size_t PdfWriter::add(Object object)
{
    m_objects.push_back(std::move(object));
    return firstNumber + m_objects.size() - 1;
}

void PdfWriter::addRawPage(std::string_view page)
{
    m_kids.append(reference(add(std::string(page)))).append(" ");
    ++m_pages;
}

void PdfWriter::addPage(std::string_view content, std::string_view size)
{
    std::string page = "<</Type/Page/Parent 2 0 R/MediaBox[0 0 ";
    page.append(size).append("]/Resources<</Font<</F1 ").append(reference(fontNumber));
    page.append(">>>>/Contents ").append(reference(add(stream("", content)))).append(">>");
    addRawPage(page);
}

std::string PdfWriter::shown(std::string_view line)
{
    std::string operators = "(";
    for (const char character : line) {
        if (character == '(' || character == ')' || character == '\\')
            operators += '\\';
        operators += character;
    }
    return operators.append(") Tj T*\n");
}

void PdfWriter::addTextPage(const std::vector<std::string>& lines)
{
    std::string content = "BT /F1 12 Tf 14 TL 72 720 Td\n";
    for (const std::string& line : lines)
        content.append(shown(line));
    addPage(content.append("ET"));
}

/// The entry of an annotation of 200 by 40 points that `content` draws.
std::string PdfWriter::appearanceOf(std::string_view content)
{
    std::string form = "/Type/XObject/Subtype/Form/BBox[0 0 200 40]/Resources<</Font<</F1 ";
    form.append(reference(fontNumber)).append(">>>>");
    return "/AP<</N " + reference(add(stream(form, content))) + ">>";
}

void PdfWriter::addAnnotatedPage(std::string_view kind, std::string_view content)
{
    std::string annotation = "<</Type/Annot/F 4/Rect[20 20 220 60]/Subtype/";
    annotation.append(kind).append(appearanceOf(content)).append(">>");
    addRawPage("<</Type/Page/Parent 2 0 R/MediaBox[0 0 250 100]/Annots[" +
               reference(add(annotation)) + "]>>");
}

void PdfWriter::addFormPage(const std::vector<std::string>& lines, std::string_view value,
                            std::string_view appearance, std::string_view entries)
{
    std::string field = "<</Type/Annot/Subtype/Widget/Rect[72 400 272 440]/FT/Tx/T(field)/V ";
    field.append(value).append("/DA(/F1 12 Tf 0 g)").append(entries);
    if (!appearance.empty())
        field.append(appearanceOf(appearance));
    const std::string widget = reference(add(field.append(">>")));
    m_fields.append(widget).append(" ");
    std::string content = "BT /F1 12 Tf 14 TL 72 720 Td\n";
    for (const std::string& line : lines)
        content.append(shown(line));
    const std::string contents = reference(add(stream("", content.append("ET"))));
    addRawPage("<</Type/Page/Parent 2 0 R/MediaBox[0 0 612 792]/Resources<</Font<</F1 " +
               reference(fontNumber) + ">>>>/Contents " + contents + "/Annots[" + widget + "]>>");
}

void PdfWriter::addScannedPage(const QImage& image)
{
    const QImage grey = image.convertToFormat(QImage::Format_Grayscale8);
    std::string pixels;
    for (int row = 0; row < grey.height(); ++row)
        pixels.append(reinterpret_cast<const char*>(grey.constScanLine(row)),
                      static_cast<std::size_t>(grey.width()));
    const std::string width = std::to_string(grey.width());
    const std::string height = std::to_string(grey.height());
    std::string dictionary = "/Type/XObject/Subtype/Image/ColorSpace/DeviceGray/BitsPerComponent 8";
    dictionary.append("/Width ").append(width).append("/Height ").append(height);
    const std::size_t picture = add(stream(dictionary, pixels));
    const std::size_t content =
        add(stream("", std::to_string(grey.width() / 2) + " 0 0 " +
                           std::to_string(grey.height() / 2) + " 0 0 cm /I Do"));
    addRawPage("<</Type/Page/Parent 2 0 R/MediaBox[0 0 " + std::to_string(grey.width() / 2) + " " +
               std::to_string(grey.height() / 2) + "]/Resources<</XObject<</I " +
               reference(picture) + ">>>>/Contents " + reference(content) + ">>");
}

void PdfWriter::readCharacterAs(char character, std::string_view utf16)
{
    std::array<char, 8> code{};
    std::snprintf(code.data(), code.size(), "<%02X> ", static_cast<unsigned char>(character));
    m_readings.append(code.data()).append("<").append(utf16).append(">\n");
    ++m_readingCount;
}

void PdfWriter::addToCatalog(std::string_view entries)
{
    m_catalog.append(entries);
}

void PdfWriter::addToTrailer(std::string_view entries)
{
    m_trailer.append(entries);
}

PdfWriter::Object PdfWriter::characterMap() const
{
    std::string map = "/CIDInit /ProcSet findresource begin 12 dict begin begincmap\n"
                      "/CMapType 2 def 1 begincodespacerange <00> <FF> endcodespacerange\n";
    map.append(std::to_string(m_readingCount)).append(" beginbfchar\n").append(m_readings);
    return stream("", map.append("endbfchar endcmap end end"));
}

PdfWriter::Object PdfWriter::catalog() const
{
    std::string catalog = "<</Type/Catalog/Pages 2 0 R" + m_catalog;
    if (!m_fields.empty())
        catalog += "/AcroForm<</Fields[" + m_fields + "]/DR<</Font<</F1 " + reference(fontNumber) +
                   ">>>>>>";
    return catalog + ">>";
}

std::string PdfWriter::bytes() const
{
    std::vector<Object> objects = {catalog()};
    objects.push_back("<</Type/Pages/Count " + std::to_string(m_pages) + "/Kids[" + m_kids + "]>>");
    objects.emplace_back("<</Type/Font/Subtype/Type1/BaseFont/Helvetica/Encoding/WinAnsiEncoding"
                         "/ToUnicode 4 0 R>>");
    objects.push_back(characterMap());
    objects.insert(objects.end(), m_objects.begin(), m_objects.end());

    std::string bytes = "%PDF-1.7\n";
    std::string table = "0000000000 65535 f \n";
    std::size_t number = 0;
    for (const Object& object : objects) {
        std::array<char, 32> entry{};
        std::snprintf(entry.data(), entry.size(), "%010zu 00000 n \n", bytes.size());
        table.append(entry.data());
        bytes.append(std::to_string(++number)).append(" 0 obj\n").append(object);
        bytes.append("\nendobj\n");
    }
    const std::string size = std::to_string(objects.size() + 1);
    const std::string tableOffset = std::to_string(bytes.size());
    bytes.append("xref\n0 ").append(size).append("\n").append(table);
    bytes.append("trailer\n<</Root 1 0 R/Size ").append(size).append(m_trailer);
    return bytes.append(">>\nstartxref\n").append(tableOffset).append("\n%%EOF\n");
}
