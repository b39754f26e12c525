#include "DocumentSamples.h"

#include "PdfWriter.h"
#include "SampleText.h"
#include "ZipWriter.h"

#include <QFont>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

namespace DocumentSamples {

static std::vector<std::string> lines(std::size_t bytes)
{
    std::vector<std::string> lines;
    const std::string text = SampleText::make(SampleText::Kind::asciiProse, bytes);
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        lines.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return lines;
}

static void write(const std::filesystem::path& file, std::string_view bytes)
{
    std::ofstream(file, std::ios::binary) << bytes;
}

void writePdf(const std::filesystem::path& file, int pages)
{
    constexpr std::size_t linesPerPage = 50;
    constexpr std::size_t lineBytes = 81;
    constexpr int margin = 40; // points
    constexpr int spacing = 15;
    QPdfWriter writer(QString::fromStdString(file.string()));
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setResolution(72);
    QPainter painter(&writer);
    painter.setFont(QFont(QStringLiteral("DejaVu Serif"), 10));
    const std::vector<std::string> text =
        lines(static_cast<std::size_t>(pages) * linesPerPage * lineBytes);
    std::size_t next = 0;
    for (int page = 0; page < pages; ++page) {
        if (page > 0)
            writer.newPage();
        for (std::size_t line = 0; line < linesPerPage && next < text.size(); ++line, ++next)
            painter.drawText(margin, margin + spacing * static_cast<int>(line),
                             QString::fromStdString(text[next]));
    }
}

void writeScan(const std::filesystem::path& file, int pages)
{
    constexpr std::size_t linesPerPage = 72;
    constexpr std::size_t lineBytes = 81;
    constexpr int margin = 80; // pixels
    constexpr int spacing = 21;
    QFont font(QStringLiteral("DejaVu Serif"));
    font.setPixelSize(17);
    const std::vector<std::string> text =
        lines(static_cast<std::size_t>(pages) * linesPerPage * lineBytes);
    std::size_t next = 0;
    PdfWriter pdf;
    for (int page = 0; page < pages; ++page) {
        QImage image(1190, 1684, QImage::Format_Grayscale8);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setFont(font);
        for (std::size_t line = 0; line < linesPerPage && next < text.size(); ++line, ++next)
            painter.drawText(margin, margin + spacing * static_cast<int>(line),
                             QString::fromStdString(text[next]));
        painter.end();
        pdf.addScannedPage(image);
    }
    write(file, pdf.bytes());
}

std::size_t writeDocx(const std::filesystem::path& file, std::size_t bytes)
{
    std::string xml = R"(<?xml version="1.0" encoding="UTF-8"?><w:document><w:body>)";
    // The tags make the prose about three times as long.
    for (const std::string& line : lines(bytes / 3)) {
        xml.append(R"(<w:p w:rsidR="00A77427"><w:pPr><w:rPr><w:sz w:val="22"/></w:rPr></w:pPr>)");
        xml.append(R"(<w:r><w:tab/><w:t xml:space="preserve">)").append(line);
        xml.append("</w:t></w:r><w:r><w:t>&amp; more</w:t></w:r></w:p>");
    }
    xml.append("</w:body></w:document>");
    write(file, ZipWriter::document(xml));
    return xml.size();
}

std::size_t writeRtf(const std::filesystem::path& file, std::size_t bytes)
{
    std::string rtf = R"({\rtf1\ansi\ansicpg1252\deff0{\fonttbl{\f0 Times;}})";
    while (rtf.size() < bytes) {
        for (const std::string& line : lines(std::min<std::size_t>(bytes - rtf.size(), 100'000)))
            rtf.append(R"(\pard\plain\f0\fs22 )")
                .append(line)
                .append(R"( {\b caf\'e9} \u8364?\par)")
                .append("\n");
    }
    rtf.append("}");
    write(file, rtf);
    return rtf.size();
}

void writeText(const std::filesystem::path& file, std::size_t bytes, bool isLatin1)
{
    write(file, isLatin1 ? std::string(bytes, '\xE9')
                         : SampleText::make(SampleText::Kind::asciiProse, bytes));
}

} // namespace DocumentSamples
