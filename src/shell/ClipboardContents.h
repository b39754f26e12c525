#pragma once

#include "Pasteboard.h"

#include <QByteArray>

#include <vector>

/// What is on a clipboard, as bytes that one process of the program can send another.
namespace ClipboardContents {

QByteArray written(const std::vector<Pasteboard::Item>& items);

/// Nothing where `bytes` are not what `written` has made.
std::vector<Pasteboard::Item> read(const QByteArray& bytes);

} // namespace ClipboardContents
