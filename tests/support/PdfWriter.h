#pragma once

#include <string>
#include <string_view>
#include <vector>

class QImage;

/// Writes PDF documents, good ones and, with the functions that take raw PDF, bad ones.
class PdfWriter
{
public:
    /// A page with `content`, a stream of drawing operators; /F1 is Helvetica. Sizes in points.
    void addPage(std::string_view content, std::string_view size = "612 792");

    /// A page of Latin-1 lines below each other.
    void addTextPage(const std::vector<std::string>& lines);

    /// A scanned page: nothing but `image`, at two pixels a point.
    void addScannedPage(const QImage& image);

    /// A page with nothing but an annotation of that kind, drawn by the operators `content`.
    void addAnnotatedPage(std::string_view kind, std::string_view content);

    /// A page of `lines` with a field of a form in its lower part, filled in with `value`, a PDF
    /// string: "(text)". `appearance` are the operators that draw it; where it is empty, the viewer
    /// is to draw the value. `entries` go into the field.
    void addFormPage(const std::vector<std::string>& lines, std::string_view value,
                     std::string_view appearance, std::string_view entries = "");

    /// A page that is the object `page`, whatever that is.
    void addRawPage(std::string_view page);

    /// Lets the text layer read `character` as `utf16`, in hexadecimal digits.
    void readCharacterAs(char character, std::string_view utf16);

    /// Puts `entries` into the catalogue.
    void addToCatalog(std::string_view entries);

    /// Puts `entries` into the trailer.
    void addToTrailer(std::string_view entries);

    /// The operators that show one line of Latin-1 text where the page is at.
    static std::string shown(std::string_view line);

    std::string bytes() const;

private:
    using Object = std::string;

    std::size_t add(Object object);
    static Object stream(std::string_view dictionary, std::string_view data);
    static std::string reference(std::size_t number);
    std::string appearanceOf(std::string_view content);
    Object characterMap() const;
    Object catalog() const;

    std::vector<Object> m_objects; // the first of them is number firstNumber
    std::string m_kids;
    std::size_t m_pages = 0;
    std::string m_readings;
    std::size_t m_readingCount = 0;
    std::string m_fields; // references
    std::string m_catalog;
    std::string m_trailer;
};
