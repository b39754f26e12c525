#pragma once

#include <QIcon>

/// The program's mark: a pair of quotation marks.
namespace QuotationMark {

/// The mark in white for dark surroundings or in black for light ones, with a thin rim of the other
/// so that it can be told from surroundings of either kind; sharp at every size. Main thread.
QIcon icon(bool isDark);

} // namespace QuotationMark
