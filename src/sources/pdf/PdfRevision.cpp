#include "PdfRevision.h"

#include <qpdf/Pl_String.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFAcroFormDocumentHelper.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFWriter.hh>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <utility>
#include <vector>

namespace {

bool hasFields(QPDF& pdf)
{
    QPDFObjectHandle form = pdf.getRoot().getKey("/AcroForm");
    if (!form.isDictionary())
        return false;
    QPDFObjectHandle fields = form.getKey("/Fields");
    return fields.isArray() && fields.getArrayNItems() > 0;
}

/// Gives the form's fields the appearances that they lack. Many programs leave it to the viewer to
/// draw what they fill in.
void drawValues(QPDF& pdf)
{
    QPDFAcroFormDocumentHelper form(pdf);
    form.generateAppearancesIfNeeded();
    for (QPDFPageObjectHelper& page : QPDFPageDocumentHelper(pdf).getAllPages()) {
        for (QPDFAnnotationObjectHelper& widget : form.getWidgetAnnotationsForPage(page)) {
            QPDFFormFieldObjectHelper field = form.getFieldForAnnotation(widget);
            if ((field.isText() || field.isChoice()) && widget.getAppearanceStream("/N").isNull())
                field.generateAppearance(widget);
        }
    }
}

bool uncropPage(QPDFPageObjectHelper& page)
{
    QPDFObjectHandle crop = page.getAttribute("/CropBox", false);
    QPDFObjectHandle media = page.getAttribute("/MediaBox", false);
    if (!crop.isRectangle() || !media.isRectangle() ||
        crop.unparseResolved() == media.unparseResolved())
        return false;
    page.getObjectHandle().replaceKey("/CropBox", media);
    return true;
}

std::string written(QPDF& pdf)
{
    std::string bytes;
    Pl_String pipeline("", nullptr, bytes);
    QPDFWriter writer(pdf);
    writer.setOutputPipeline(&pipeline);
    writer.setPreserveEncryption(false);
    writer.setDecodeLevel(qpdf_dl_none);
    writer.write();
    return bytes;
}

/// Returns what `action` returns, or `otherwise` if the document is too damaged for it. Qt Pdf may
/// get more out of the unchanged document.
template <typename Result, typename Action>
Result attempt(Result otherwise, Action action)
{
    try {
        return action();
    } catch (const std::exception&) {
        return otherwise;
    }
}

/// Opens the file of `descriptor` again, so that it has a position of its own. Null if that fails.
std::FILE* openedAgain(int descriptor)
{
    const std::string path = "/proc/self/fd/" + std::to_string(descriptor);
    return std::fopen(path.c_str(), "rbe");
}

} // namespace

PdfRevision::PdfRevision(int descriptor)
{
    std::FILE* const file = openedAgain(descriptor);
    if (file == nullptr)
        return;
    auto document = std::make_unique<QPDF>();
    document->setSuppressWarnings(true);
    const bool isRead = attempt(false, [&] {
        document->processFile("PDF", file, true);
        return true;
    });
    if (isRead)
        m_document = std::move(document);
}

PdfRevision::~PdfRevision() = default;

bool PdfRevision::drawForm()
{
    return m_document && attempt(false, [this] {
               if (!hasFields(*m_document))
                   return false;
               drawValues(*m_document);
               QPDFPageDocumentHelper(*m_document).flattenAnnotations();
               return true;
           });
}

bool PdfRevision::uncrop(std::size_t count)
{
    return m_document && attempt(false, [&] {
               std::vector<QPDFPageObjectHelper> pages =
                   QPDFPageDocumentHelper(*m_document).getAllPages();
               bool isChanged = false;
               for (std::size_t i = 0; i < std::min(count, pages.size()); ++i)
                   isChanged = uncropPage(pages[i]) || isChanged;
               return isChanged;
           });
}

std::string PdfRevision::bytes()
{
    return m_document ? attempt(std::string(), [this] { return written(*m_document); })
                      : std::string();
}
