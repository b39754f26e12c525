#include "DocumentReader.h"

#include "OCR.h"
#include "PlainText.h"
#include "RichText.h"

#include <QFile>
#include <QFileInfo>
#include <QStringList>

namespace DocumentReader {

static const QStringList imageExtensions = {"png", "jpg",  "jpeg", "heic",
                                            "tif", "tiff", "gif",  "bmp"};

/// What follows the last dot of the name, in lower case; empty if there is no dot. The standard
/// library's extension() does not suffice: for it ".pdf" has none.
static QString extension(const std::filesystem::path& file)
{
    // A folder's path may end in a slash.
    const std::filesystem::path named = file.has_filename() ? file : file.parent_path();
    return QFileInfo(QFile::decodeName(named.c_str())).suffix().toLower();
}

std::string read(const std::filesystem::path& file, const OnPage& onPage)
{
    const QString kind = extension(file);
    if (kind == "pdf")
        return readPDF(file, onPage);
    if (kind == "docx")
        return readDOCX(file);
    if (kind == "rtf" || kind == "rtfd")
        return RichText::read(file);
    if (imageExtensions.contains(kind))
        return OCR::recognize(file);
    return PlainText::read(file);
}

} // namespace DocumentReader
