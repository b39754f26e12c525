#pragma once

#include <string>

class QNetworkReply;
class QUrl;

/// What both the download of the model and the fetch of a page want to know of a server's answer.
/// Any thread.
namespace HttpReply {

/// The status, such as 404; 0 if there is none.
int status(const QNetworkReply& reply);

/// Qt's words for what has gone wrong, as a sentence: not all of them end in a full stop.
std::string sentence(std::string words);

/// Whether a redirect from `from` to `to` would leave an encrypted connection.
bool losesEncryption(const QUrl& from, const QUrl& to);

} // namespace HttpReply
