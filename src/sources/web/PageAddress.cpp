#include "PageAddress.h"

#include "AppError.h"
#include "WhiteSpace.h"

#include <string>

namespace PageAddress {

QUrl parsed(std::string_view typed)
{
    std::string address(WhiteSpace::trimmed(typed));
    if (address.find("://") == std::string::npos)
        address.insert(0, "https://");
    // The text is asked, because QUrl turns the scheme into lower case.
    const bool isWeb = address.starts_with("https://") || address.starts_with("http://");
    QUrl url(QString::fromStdString(address));
    if (!isWeb || !url.isValid() || url.host().isEmpty())
        throw AppError("Enter a valid web address.");
    return url;
}

} // namespace PageAddress
