#pragma once

#include "PdfRevision.h"
#include "RegularFile.h"

#include <QPdfDocument>

#include <filesystem>
#include <memory>
#include <optional>

class QIODevice;

/// A PDF file that is open for reading and drawing, with what is filled into its form. One thread
/// at a time, any.
class PdfDocument
{
public:
    /// Throws AppError where it has no page that can be opened.
    explicit PdfDocument(const std::filesystem::path& file);

    /// The document as it is shown; the reference holds until the next call of uncrop().
    QPdfDocument& get() const { return m_shown->document; }

    /// Has the first `count` pages drawn up to their media boxes instead of their crop boxes.
    void uncrop(std::size_t count);

private:
    struct Shown
    {
        std::unique_ptr<QIODevice> device; // which the document reads
        QPdfDocument document;
    };

    void showFile();
    void showRevision();
    void show(std::unique_ptr<QIODevice> device);

    const std::optional<RegularFile> m_file;
    std::optional<PdfRevision> m_revision;
    std::unique_ptr<Shown> m_shown;
};
