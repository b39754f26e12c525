#include "PdfForm.h"

#include <qpdf/Pl_String.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFAcroFormDocumentHelper.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFWriter.hh>

#include <unistd.h>

#include <cstdio>
#include <exception>

namespace PdfForm {

namespace {

bool hasFields(QPDF& pdf)
{
    QPDFObjectHandle form = pdf.getRoot().getKey("/AcroForm");
    if (!form.isDictionary())
        return false;
    QPDFObjectHandle fields = form.getKey("/Fields");
    return fields.isArray() && fields.getArrayNItems() > 0;
}

/// Many programs leave it to the viewer to draw what they fill in.
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

} // namespace

std::optional<std::string> flattened(int descriptor)
{
    const int copy = ::dup(descriptor);
    std::FILE* const file = copy < 0 ? nullptr : ::fdopen(copy, "rb");
    if (file == nullptr)
        return std::nullopt;
    try {
        QPDF pdf;
        pdf.setSuppressWarnings(true);
        pdf.processFile("PDF", file, true);
        if (!hasFields(pdf))
            return std::nullopt;
        drawValues(pdf);
        QPDFPageDocumentHelper(pdf).flattenAnnotations();
        return written(pdf);
    } catch (const std::exception&) {
        return std::nullopt; // Qt Pdf may get more out of it
    }
}

} // namespace PdfForm
