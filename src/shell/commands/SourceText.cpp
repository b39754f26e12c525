#include "SourceText.h"

#include "AppError.h"
#include "CaptureSource.h"
#include "Child.h"
#include "DesktopSource.h"
#include "DocumentProcess.h"
#include "PlainText.h"
#include "TextOutput.h"
#include "WebPage.h"
#include "WhiteSpace.h"

#include <filesystem>
#include <iostream>
#include <utility>

namespace SourceText {

namespace {

/// What kind of source it is, and what messages call it.
struct Source
{
    enum class Kind { standardInput, page, file };

    Kind kind;
    std::string label;
    std::filesystem::path file = {};
};

/// `path` without a slash after a folder's name, which would hide its extension.
std::filesystem::path withoutSlash(const std::filesystem::path& path)
{
    return path.has_filename() ? path : path.parent_path();
}

Source recognised(const std::string& source)
{
    if (source == "-" || source == "/dev/stdin") // another process has another one
        return {Source::Kind::standardInput, "standard input"};
    std::error_code ignored;
    const std::filesystem::file_type type = std::filesystem::symlink_status(source, ignored).type();
    // `none` means that the system cannot tell, for example because the name is too long.
    const bool namesFile =
        type != std::filesystem::file_type::not_found && type != std::filesystem::file_type::none;
    if (!namesFile && source.find("://") != std::string::npos)
        return {Source::Kind::page, source};
    if (type == std::filesystem::file_type::not_found)
        throw AppError("There is no file named " + source + ".");
    const std::filesystem::path file = withoutSlash(source);
    return {Source::Kind::file, file.filename().string(), file};
}

std::string textOf(const Source& source)
{
    switch (source.kind) {
    case Source::Kind::standardInput:
        return PlainText::read(*stdin);
    case Source::Kind::page:
        return WebPage::read(source.label);
    case Source::Kind::file:
        break;
    }
    DocumentText text = DocumentProcess::read(source.file, Child::thisProgram());
    if (!text.share.empty())
        std::cerr << "pithwise: " << TextOutput::oneLine(source.label) << " takes too long. Only "
                  << text.share << " can be used.\n";
    return std::move(text.text);
}

} // namespace

std::string read(const std::string& source)
{
    const Source recognisedSource = recognised(source);
    std::string text = textOf(recognisedSource);
    if (WhiteSpace::trimmed(text).empty())
        throw AppError("No text found in " + recognisedSource.label + ".");
    return text;
}

std::string read(const SummaryRequest& request)
{
    if (request.capture)
        return CaptureSource::read(*request.capture);
    return request.desktop ? DesktopSource::read(*request.desktop) : read(request.source);
}

} // namespace SourceText
