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

/// How Tesseract tells text from its ground.
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
}

void TesseractRecognizer::setThresholding(Thresholding thresholding)
{
    // Sauvola's method goes by the surroundings of each pixel: with one threshold for all, a window
    // with little text is taken for a picture where the desktop is of another shade. The factor is
    // lower than usual (0.34), so that faint text counts too.
    const bool isLocal = thresholding == Thresholding::local;
    m_tesseract.SetVariable("thresholding_method", isLocal ? "2" : "0");
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

std::size_t letterCount(std::string_view text)
{
    const auto beginsLetter = [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
    };
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), beginsLetter));
}

/// What is read, and how sure of it Tesseract is.
struct Words
{
    double letters = 0;
    double confidence = 0; // the sum of that of each letter, 0 to 1
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
        // Squared, so that much of what is guessed does not outweigh little that is known.
        sums.certainty += letters * confidence * confidence;
    } while (result->Next(tesseract::RIL_WORD));
    return sums;
}

/// Whether what is read is more likely grain than text.
bool isGuessed(const Words& words)
{
    return words.confidence < 0.5 * words.letters;
}

/// Whether more could be read in a picture where `seen` pieces could be letters.
bool isDoubtful(const Words& words, std::size_t seen)
{
    constexpr double leastConfidence = 0.9;
    constexpr double leastShare = 0.85;
    return words.confidence < leastConfidence * words.letters ||
           words.letters < leastShare * static_cast<double>(seen);
}

TextRecognizer::Reading TesseractRecognizer::read(const GreyImage& image)
{
    if (image.width <= 0 || image.height <= 0)
        return {};
    const TextPicture::Prepared prepared = TextPicture::prepared(image);
    if (!prepared.picture) // though its colours may differ
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

/// `letters` is how many the picture seems to have; without a resolution Tesseract guesses it.
TextRecognizer::Reading TesseractRecognizer::recognize(Pix* picture, int resolution,
                                                       std::size_t letters)
{
    const OneThread oneThread;
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
