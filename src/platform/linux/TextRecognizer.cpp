#include "TextRecognizer.h"

#include "OneThread.h"
#include "RecognitionLanguages.h"
#include "TextPicture.h"

#include <tesseract/baseapi.h>
#include <tesseract/resultiterator.h>

#include <algorithm>
#include <mutex>
#include <stdexcept>
#include <string_view>

namespace {

/// Tesseract's estimate of a text's real size, on which only its tolerance of specks depends. Any
/// plausible figure does; without one it guesses.
constexpr int dotsPerInch = 192;

class TesseractRecognizer final : public TextRecognizer
{
public:
    TesseractRecognizer();

    std::vector<std::string> lines(const GreyImage& image) override;

private:
    tesseract::TessBaseAPI m_tesseract;
};

std::string joined(const std::vector<std::string>& languages)
{
    std::string result;
    for (const std::string& language : languages) {
        if (!result.empty())
            result += '+';
        result += language;
    }
    return result;
}

/// Both libraries print to the standard error stream, each as its process-wide settings say.
void silence(tesseract::TessBaseAPI& tesseract)
{
    static std::once_flag once;
    std::call_once(once, [&tesseract] {
        tesseract.SetVariable("debug_file", "/dev/null");
        setMsgSeverity(L_SEVERITY_NONE);
    });
}

TesseractRecognizer::TesseractRecognizer()
{
    silence(m_tesseract);
    // Loading a language may change settings that all objects share.
    static std::mutex loading;
    const std::lock_guard lock(loading);
    // A language without its data is passed over, also the first.
    const std::string wanted = joined(RecognitionLanguages::wanted());
    std::vector<std::string> loaded;
    if (m_tesseract.Init(nullptr, wanted.c_str(), tesseract::OEM_LSTM_ONLY) == 0)
        m_tesseract.GetLoadedLanguagesAsVector(&loaded);
    if (std::find(loaded.begin(), loaded.end(), "eng") == loaded.end())
        throw std::runtime_error("Text recognition needs Tesseract's language data for English. "
                                 "Install it and try again.");
    m_tesseract.SetPageSegMode(tesseract::PSM_AUTO);
    // Sauvola's method goes by the surroundings of each pixel: with one threshold for all, a window
    // with little text is taken for a picture where the desktop is of another shade. The factor is
    // lower than usual (0.34), so that faint text counts too.
    m_tesseract.SetVariable("thresholding_method", "2");
    m_tesseract.SetVariable("thresholding_kfactor", "0.1");
}

/// The line that `result` stands at, without the line end that Tesseract puts behind it; what it
/// finds in pictures is often only blanks.
std::string line(const tesseract::ResultIterator& result)
{
    constexpr std::string_view blanks = " \t\r\n";
    const std::unique_ptr<char[]> text(result.GetUTF8Text(tesseract::RIL_TEXTLINE));
    const std::string_view bytes = text ? text.get() : "";
    const std::size_t begin = bytes.find_first_not_of(blanks);
    if (begin == std::string_view::npos)
        return {};
    return std::string(bytes.substr(begin, bytes.find_last_not_of(blanks) + 1 - begin));
}

std::vector<std::string> TesseractRecognizer::lines(const GreyImage& image)
{
    if (image.width <= 0 || image.height <= 0)
        return {};
    const Picture picture = TextPicture::prepared(image);
    if (!picture)
        return {};
    const OneThread oneThread;
    m_tesseract.SetImage(picture.get());
    m_tesseract.SetSourceResolution(dotsPerInch);
    if (m_tesseract.Recognize(nullptr) != 0)
        throw std::runtime_error("The text in the picture could not be recognised.");
    std::vector<std::string> lines;
    const std::unique_ptr<tesseract::ResultIterator> result(m_tesseract.GetIterator());
    if (result) {
        do
            lines.push_back(line(*result));
        while (result->Next(tesseract::RIL_TEXTLINE));
    }
    m_tesseract.Clear();
    return lines;
}

} // namespace

std::unique_ptr<TextRecognizer> TextRecognizer::create()
{
    return std::make_unique<TesseractRecognizer>();
}
