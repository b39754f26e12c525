#include "HttpReply.h"

#include <QNetworkReply>
#include <QUrl>

namespace HttpReply {

int status(const QNetworkReply& reply)
{
    return reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

std::string sentence(std::string words)
{
    if (!words.ends_with('.'))
        words += '.';
    return words;
}

bool losesEncryption(const QUrl& from, const QUrl& to)
{
    return from.scheme() == QLatin1String("https") && to.scheme() != QLatin1String("https");
}

} // namespace HttpReply
