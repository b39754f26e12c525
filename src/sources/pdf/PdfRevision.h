#pragma once

#include <cstddef>
#include <memory>
#include <string>

class QPDF;

/// Changes a PDF so that Qt Pdf shows all of it. Qt Pdf knows no forms and draws no more of a page
/// than its crop box. May be used by any thread, but by one at a time.
class PdfRevision
{
public:
    /// Reads the PDF in the file `descriptor`, whose position stays. If the PDF is damaged or
    /// cannot be read without a password, no call changes anything.
    explicit PdfRevision(int descriptor);
    ~PdfRevision();
    PdfRevision(const PdfRevision&) = delete;
    PdfRevision& operator=(const PdfRevision&) = delete;

    /// Draws what is filled into a form, and all annotations, on the pages for good. Returns false,
    /// and changes nothing, if there is no form. Characters that are not Latin are drawn only if
    /// the program that filled in the form has drawn them.
    bool drawForm();

    /// Makes the first `count` pages be shown up to their media boxes. Returns false if they are
    /// already.
    bool uncrop(std::size_t count);

    /// The whole changed PDF, empty if it cannot be written.
    std::string bytes();

private:
    std::unique_ptr<QPDF> m_document; // null if it cannot be read
};
