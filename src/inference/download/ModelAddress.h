#pragma once

#include <QUrl>

/// The address that the model is downloaded from, and the addresses that are allowed. Every
/// function may be called from any thread.
namespace ModelAddress {

/// The environment variable PITHWISE_MODEL_URL if it is set and not empty, else the address that
/// the build options give. Not yet checked by requireAllowed().
QUrl configured();

/// Throws AppError unless the model may come from `address`: over https, or over plain http from
/// this computer (localhost, 127.0.0.0/8, ::1), where nobody else can change what is transferred.
void requireAllowed(const QUrl& address);

/// Throws AppError unless a server at `from` may redirect the download to `to`. The model must be
/// allowed to come from `to`, and no redirect may lead from https to http. Requires: `from` is
/// allowed.
void requireAllowedRedirect(const QUrl& from, const QUrl& to);

} // namespace ModelAddress
