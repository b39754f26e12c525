#include "PdfDocument.h"

#include "AppError.h"

#include <QBuffer>
#include <QFile>

#include <utility>

PdfDocument::PdfDocument(const std::filesystem::path& file) : m_file(RegularFile::open(file))
{
    if (m_file) {
        m_revision.emplace(m_file->descriptor());
        if (m_revision->drawForm())
            showRevision();
        if (!m_shown)
            showFile();
    }
    if (!m_shown)
        throw AppError("Could not open the PDF.");
}

void PdfDocument::uncrop(std::size_t count)
{
    if (m_revision->uncrop(count))
        showRevision();
}

void PdfDocument::showFile()
{
    auto device = std::make_unique<QFile>();
    if (device->open(m_file->descriptor(), QIODevice::ReadOnly))
        show(std::move(device));
}

void PdfDocument::showRevision()
{
    auto device = std::make_unique<QBuffer>();
    device->setData(QByteArray::fromStdString(m_revision->bytes()));
    if (device->open(QIODevice::ReadOnly))
        show(std::move(device));
}

/// Shows the PDF in `device`, if any page of it can be opened; else nothing changes.
void PdfDocument::show(std::unique_ptr<QIODevice> device)
{
    auto shown = std::make_unique<Shown>();
    shown->device = std::move(device);
    shown->document.load(shown->device.get());
    // One bad page makes the status an error, although the other pages can be used.
    if (shown->document.status() == QPdfDocument::Status::Ready || shown->document.pageCount() > 0)
        m_shown = std::move(shown);
}
