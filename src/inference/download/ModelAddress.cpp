#include "ModelAddress.h"

#include "AppError.h"
#include "HttpReply.h"
#include "ModelFile.h"

#include <QHostAddress>

#include <string>

namespace ModelAddress {

static QString builtIn()
{
    return QStringLiteral("https://" PITHWISE_MODEL_HOST "/" PITHWISE_MODEL_ACCOUNT
                          "/Qwen2.5-1.5B-Instruct-GGUF/resolve/main/") +
           QString::fromUtf8(ModelFile::name.data(), qsizetype(ModelFile::name.size()));
}

static bool isThisComputer(const QString& host)
{
    return host == QLatin1String("localhost") || QHostAddress(host).isLoopback();
}

[[noreturn]] static void refuseUnencrypted(const QUrl& address)
{
    throw AppError("The model is not downloaded over an unencrypted connection from " +
                   address.host().toStdString() + ".");
}

QUrl configured()
{
    const QString replacement = qEnvironmentVariable("PITHWISE_MODEL_URL");
    return QUrl(replacement.isEmpty() ? builtIn() : replacement);
}

void requireAllowed(const QUrl& address)
{
    const bool encrypted = address.scheme() == QLatin1String("https");
    const bool web = encrypted || address.scheme() == QLatin1String("http");
    if (!address.isValid() || !web || address.host().isEmpty()) {
        throw AppError("The model cannot be downloaded from the address \"" +
                       address.toDisplayString().toStdString() + "\".");
    }
    if (!encrypted && !isThisComputer(address.host()))
        refuseUnencrypted(address);
}

void requireAllowedRedirect(const QUrl& from, const QUrl& to)
{
    requireAllowed(to);
    if (HttpReply::losesEncryption(from, to))
        refuseUnencrypted(to);
}

} // namespace ModelAddress
