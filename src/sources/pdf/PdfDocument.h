#pragma once

#include "PdfRevision.h"
#include "RegularFile.h"

#include <QIODevice>
#include <QPdfDocument>

#include <filesystem>
#include <memory>
#include <optional>

/// A PDF file that is open for reading and drawing, with what is filled into its form. May be used
/// by any thread, but by one at a time.
class PdfDocument
{
public:
    /// Throws AppError if no page of the file can be opened.
    explicit PdfDocument(const std::filesystem::path& file);

    /// The document with all changes made so far. The reference is valid until the next call of
    /// uncrop().
    QPdfDocument& get() const { return m_shown->document; }

    /// Makes the first `count` pages be drawn up to their media boxes instead of their crop boxes.
    void uncrop(std::size_t count);

private:
    struct Shown
    {
        std::unique_ptr<QIODevice> device; // the document reads from it
        QPdfDocument document;
    };

    void showFile();
    void showRevision();
    void show(std::unique_ptr<QIODevice> device);

    const std::optional<RegularFile> m_file;
    std::optional<PdfRevision> m_revision;
    std::unique_ptr<Shown> m_shown;
};
