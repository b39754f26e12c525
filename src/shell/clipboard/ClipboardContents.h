#pragma once

#include "Pasteboard.h"

#include <QByteArray>

#include <vector>

/// The contents of a clipboard, as bytes that one process of the program can send to another.
namespace ClipboardContents {

QByteArray written(const std::vector<Pasteboard::Item>& items);

/// The items that written() has turned into `bytes`. Empty if written() has not made them.
std::vector<Pasteboard::Item> read(const QByteArray& bytes);

} // namespace ClipboardContents
