#include "TextRecognizer.h"

#include "Mutex.h"
#include "RecognitionLanguages.h"
#include "SingleThreadedOpenMP.h"
#include "TextPicture.h"
#include "WhiteSpace.h"

#include <tesseract/baseapi.h>
#include <tesseract/resultiterator.h>

#include <algorithm>
#include <mutex>
#include <stdexcept>
#include <string_view>

namespace {

/// The resolution that Tesseract is told. Only its tolerance of specks depends on it, so any
/// plausible figure does; without one Tesseract guesses.
constexpr int dotsPerInch = 192;

/// How Tesseract tells text from its background.
enum class Thresholding {
    global, // Otsu's method, Tesseract's default
    local
};

class TesseractRecognizer final : public TextRecognizer
{
public:
    TesseractRecognizer();

    Reading read(const GreyImage& image) override;
    Reading readPlainly(const ColourImage& image) override;

private:
    void setThresholding(Thresholding thresholding);
    Reading recognize(Pix* picture, int resolution, std::size_t letters);

    tesseract::TessBaseAPI m_tesseract;
};

/// Keeps Tesseract and Leptonica from printing to the standard error stream. Each has a setting for
/// the whole process.
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
    static Mutex loading;
    const MutexLock lock(loading);
    // Tesseract skips a language whose data is missing, even the first.
    std::string wanted;
    for (const std::string& language : RecognitionLanguages::wanted())
        wanted += (wanted.empty() ? "" : "+") + language;
    std::vector<std::string> loaded;
    if (m_tesseract.Init(nullptr, wanted.c_str(), tesseract::OEM_LSTM_ONLY) == 0)
        m_tesseract.GetLoadedLanguagesAsVector(&loaded);
    if (std::find(loaded.begin(), loaded.end(), "eng") == loaded.end())
        throw std::runtime_error("Text recognition needs Tesseract's language data for English. "
                                 "Install it and try again.");
    m_tesseract.SetPageSegMode(tesseract::PSM_AUTO);
}

void TesseractRecognizer::setThresholding(Thresholding thresholding)
{
    // Sauvola's method compares each pixel with its surroundings. With one threshold for all
    // pixels, a window with little text is taken for a picture if the desktop has another shade.
    // The factor is lower than usual (0.34), so that faint text counts too.
    const bool isLocal = thresholding == Thresholding::local;
    m_tesseract.SetVariable("thresholding_method", isLocal ? "2" : "0");
    m_tesseract.SetVariable("thresholding_kfactor", "0.1");
}

/// The line at which `result` is, without white space at its ends. Tesseract puts a line end behind
/// it, and what it finds in pictures is often only blanks.
std::string line(const tesseract::ResultIterator& result)
{
    const std::unique_ptr<char[]> text(result.GetUTF8Text(tesseract::RIL_TEXTLINE));
    return std::string(WhiteSpace::trimmed(text ? text.get() : ""));
}

std::size_t letterCount(std::string_view text)
{
    const auto beginsLetter = [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
    };
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), beginsLetter));
}

/// How much has been read, and how sure Tesseract is of it.
struct Words
{
    double letters = 0;
    double confidence = 0; // the sum over all letters, each 0 to 1
    double certainty = 0;
};

Words words(tesseract::TessBaseAPI& tesseract)
{
    Words sums;
    const std::unique_ptr<tesseract::ResultIterator> result(tesseract.GetIterator());
    if (!result)
        return sums;
    do {
        const std::unique_ptr<char[]> text(result->GetUTF8Text(tesseract::RIL_WORD));
        const double confidence = result->Confidence(tesseract::RIL_WORD) / 100.0;
        const auto letters = static_cast<double>(letterCount(text ? text.get() : ""));
        sums.letters += letters;
        sums.confidence += letters * confidence;
        // Squared, so that many guessed letters do not outweigh a few that are certain.
        sums.certainty += letters * confidence * confidence;
    } while (result->Next(tesseract::RIL_WORD));
    return sums;
}

/// Whether what has been read is more likely grain than text.
bool isGuessed(const Words& words)
{
    return words.confidence < 0.5 * words.letters;
}

/// Whether a better reading seems possible. `seen` is how many pieces of the picture could be
/// letters.
bool isDoubtful(const Words& words, std::size_t seen)
{
    // Text as screens show it has at least 0.958, the same with a little noise up to 0.940.
    constexpr double leastConfidence = 0.945;
    constexpr double leastShare = 0.85;
    return words.confidence < leastConfidence * words.letters ||
           words.letters < leastShare * static_cast<double>(seen);
}

TextRecognizer::Reading TesseractRecognizer::read(const GreyImage& image)
{
    if (image.width <= 0 || image.height <= 0)
        return {};
    const TextPicture::Prepared prepared = TextPicture::prepared(image);
    if (!prepared.picture) // all of one shade, though its colours may differ
        return {.lines = {}, .isDoubtful = true};
    setThresholding(Thresholding::local);
    return recognize(prepared.picture.get(), dotsPerInch, prepared.letterCount);
}

TextRecognizer::Reading TesseractRecognizer::readPlainly(const ColourImage& image)
{
    if (image.width <= 0 || image.height <= 0)
        return {};
    setThresholding(Thresholding::global);
    return recognize(TextPicture::plain(image).get(), 0, 0);
}

/// `letters` is how many letters the picture seems to have. `resolution` is in dots per inch; if it
/// is 0, Tesseract guesses it.
TextRecognizer::Reading TesseractRecognizer::recognize(Pix* picture, int resolution,
                                                       std::size_t letters)
{
    const SingleThreadedOpenMP oneThread;
    m_tesseract.SetImage(picture);
    if (resolution > 0)
        m_tesseract.SetSourceResolution(resolution);
    if (m_tesseract.Recognize(nullptr) != 0)
        throw std::runtime_error("The text in the picture could not be recognised.");
    Reading reading;
    const std::unique_ptr<tesseract::ResultIterator> result(m_tesseract.GetIterator());
    if (result) {
        do
            reading.lines.push_back(line(*result));
        while (result->Next(tesseract::RIL_TEXTLINE));
    }
    const Words found = words(m_tesseract);
    reading.certainty = isGuessed(found) ? 0 : found.certainty;
    reading.isDoubtful = isDoubtful(found, letters);
    m_tesseract.Clear();
    return reading;
}

} // namespace

std::unique_ptr<TextRecognizer> TextRecognizer::create()
{
    return std::make_unique<TesseractRecognizer>();
}
