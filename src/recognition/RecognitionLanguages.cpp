#include "RecognitionLanguages.h"

#include <unicode/uloc.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

namespace RecognitionLanguages {

namespace {

/// A language for which Tesseract's name is not the code of ISO 639-2/T.
struct Exception
{
    std::string_view code;
    std::string_view script; // any script if empty
    std::string_view name;
};

constexpr std::array exceptions = {
    Exception{"zho", "Hans", "chi_sim"},  Exception{"zho", "Hant", "chi_tra"},
    Exception{"nob", "", "nor"},          Exception{"nno", "", "nor"},
    Exception{"srp", "Latn", "srp_latn"}, Exception{"uzb", "Cyrl", "uzb_cyrl"},
    Exception{"aze", "Cyrl", "aze_cyrl"}, Exception{"kur", "", "kmr"},
    Exception{"tgl", "", "fil"},
};

/// The four letters of the script that the locale is written in, empty if unknown.
std::string script(const std::string& locale)
{
    if (locale.ends_with("@latin"))
        return "Latn";
    if (locale.ends_with("@cyrillic"))
        return "Cyrl";
    const std::string plain = locale.substr(0, locale.find_first_of(".@"));
    std::array<char, ULOC_FULLNAME_CAPACITY> full{};
    std::array<char, ULOC_SCRIPT_CAPACITY> result{};
    UErrorCode status = U_ZERO_ERROR;
    uloc_addLikelySubtags(plain.c_str(), full.data(), full.size(), &status);
    uloc_getScript(full.data(), result.data(), result.size(), &status);
    return U_SUCCESS(status) == 0 ? std::string() : std::string(result.data());
}

/// The locale of `category`, by the rules of the C library.
std::string locale(const char* category)
{
    for (const char* variable : {"LC_ALL", category, "LANG"}) {
        const char* const value = std::getenv(variable);
        if (value != nullptr && *value != '\0')
            return value;
    }
    return {};
}

} // namespace

std::string name(const std::string& locale)
{
    const std::string plain = locale.substr(0, locale.find_first_of(".@"));
    const std::string code = uloc_getISO3Language(plain.c_str());
    if (code.empty() || code == "und")
        return {};
    const std::string written = script(locale);
    const auto* const found =
        std::find_if(exceptions.begin(), exceptions.end(), [&](const Exception& exception) {
            return exception.code == code &&
                   (exception.script.empty() || exception.script == written);
        });
    return found == exceptions.end() ? code : std::string(found->name);
}

std::vector<std::string> wanted()
{
    std::vector<std::string> names = {"eng"};
    // The language that the user writes and the language of the menus can differ.
    for (const char* category : {"LC_CTYPE", "LC_MESSAGES"}) {
        std::string own = name(locale(category));
        if (!own.empty() && std::find(names.begin(), names.end(), own) == names.end())
            names.push_back(std::move(own));
    }
    return names;
}

} // namespace RecognitionLanguages
