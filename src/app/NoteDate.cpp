#include "NoteDate.h"

#include <unicode/locid.h>
#include <unicode/simpletz.h>
#include <unicode/smpdtfmt.h>

#include <memory>
#include <stdexcept>

namespace NoteDate {

namespace {

/// The locale for times in the environment. Like the C library, takes the first variable that is
/// set and not empty.
std::string localeName()
{
    for (const char* variable : {"LC_ALL", "LC_TIME", "LANG"}) {
        const QByteArray value = qgetenv(variable);
        if (!value.isEmpty())
            return value.toStdString();
    }
    return "C";
}

icu::Locale userLocale()
{
    const std::string name = localeName();
    const std::string language = name.substr(0, name.find_first_of(".@"));
    // This is CLDR's name for the C library's own locale. ICU by itself would take "C" for a
    // language.
    if (language == "C" || language == "POSIX")
        return icu::Locale("en_US_POSIX");
    return icu::Locale::createCanonical(name.c_str());
}

std::string formatted(const QDateTime& moment, const char* pattern)
{
    UErrorCode error = U_ZERO_ERROR;
    icu::SimpleDateFormat format(icu::UnicodeString::fromUTF8(pattern), userLocale(), error);
    if (U_FAILURE(error) != 0)
        throw std::runtime_error("The date cannot be formatted.");
    // Qt gives the offset from UTC: ICU looks for the system's time zone only once, and does not
    // know everything that TZ may say.
    const int offset = moment.toLocalTime().offsetFromUtc() * 1000;
    format.adoptTimeZone(
        std::make_unique<icu::SimpleTimeZone>(offset, icu::UnicodeString()).release());
    icu::UnicodeString text;
    format.format(static_cast<UDate>(moment.toMSecsSinceEpoch()), text);
    std::string result;
    return text.toUTF8String(result);
}

} // namespace

std::string day(const QDateTime& moment)
{
    return formatted(moment, "yyyy-MM-dd");
}

std::string time(const QDateTime& moment)
{
    return formatted(moment, "HH:mm");
}

} // namespace NoteDate
