#pragma once

#include <QUrl>

/// Where the model is downloaded from, and where it may be downloaded from. Every function may be
/// called from any thread.
namespace ModelAddress {

/// The environment variable PITHWISE_MODEL_URL if it is set and not empty, else the address that
/// the build options give. Not checked yet.
QUrl configured();

/// Throws AppError unless `address` is one the model may come from: https, or plain http on this
/// computer (localhost, 127.0.0.0/8, ::1), where nobody else can change what is transferred.
void requireAllowed(const QUrl& address);

/// Throws AppError unless a server at `from`, itself allowed, may send the download on to `to`:
/// where the model may come from, but never from https to http.
void requireAllowedRedirect(const QUrl& from, const QUrl& to);

} // namespace ModelAddress
