#include "QtText.h"

#include "AppError.h"
#include "Utf8.h"
#include "WhiteSpace.h"

#include <QStringDecoder>

namespace QtText {

QString fromUtf8(std::string_view text)
{
    // QString::fromUtf8() would drop a leading U+FEFF.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringConverter::Flag::ConvertInitialBom);
    return decoder.decode(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
}

QString normalised(std::string_view text)
{
    return fromUtf8(WhiteSpace::normalised(text));
}

std::string toUtf8(QStringView text)
{
    const QByteArray bytes = text.toUtf8();
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

QString sentence(const std::exception& error)
{
    return fromUtf8(Utf8::decoded(sentenceOf(error)));
}

} // namespace QtText
