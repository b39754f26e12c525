#pragma once

#include <QIcon>

/// The program's icon: a pair of quotation marks.
namespace QuotationMark {

/// The icon, white for dark surroundings (`isDark`), else black. A thin rim in the other colour
/// sets it off from surroundings of either kind. It is sharp at every size. Main thread.
QIcon icon(bool isDark);

} // namespace QuotationMark
