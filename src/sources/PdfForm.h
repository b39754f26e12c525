#pragma once

#include <optional>
#include <string>

/// The forms of PDF documents, whose fields Qt Pdf neither draws nor reads.
namespace PdfForm {

/// The whole PDF that the file `descriptor` has, with what is filled into its form, and its
/// annotations, drawn on its pages for good. Nothing where it has no form, where a password is
/// needed, and where it is too damaged. Characters outside of Latin are drawn only where the
/// program that filled the form in has drawn them. Moves the position of `descriptor`. Blocks; any
/// thread.
std::optional<std::string> flattened(int descriptor);

} // namespace PdfForm
