#pragma once

#include <cstddef>
#include <memory>
#include <string>

class QPDF;

/// A PDF changed so that Qt Pdf, which knows no forms and draws no more of a page than its crop
/// box, shows all of it. One thread at a time, any.
class PdfRevision
{
public:
    /// Of the PDF in the file `descriptor`, whose position stays. Where that cannot be read without
    /// a password, or is damaged, nothing is ever changed.
    explicit PdfRevision(int descriptor);
    ~PdfRevision();
    PdfRevision(const PdfRevision&) = delete;
    PdfRevision& operator=(const PdfRevision&) = delete;

    /// Draws what is filled into a form, and all annotations, on the pages for good. False, and
    /// nothing is changed, where there is no form. Characters outside of Latin are drawn only where
    /// the program that filled the form in has drawn them.
    bool drawForm();

    /// Lets the first `count` pages be shown up to their media boxes. False where they are already.
    bool uncrop(std::size_t count);

    /// The whole changed PDF; empty where it cannot be written.
    std::string bytes();

private:
    std::unique_ptr<QPDF> m_document; // null where it cannot be read
};
