#include "ClipboardContents.h"

#include <QDataStream>
#include <QIODevice>
#include <QList>

#include <utility>

static QDataStream& operator<<(QDataStream& stream,
                               const Pasteboard::Representation& representation)
{
    for (const std::string* part :
         {&representation.type, &representation.data, &representation.form})
        stream << QByteArray::fromStdString(*part);
    return stream;
}

static QDataStream& operator>>(QDataStream& stream, Pasteboard::Representation& representation)
{
    for (std::string* part : {&representation.type, &representation.data, &representation.form}) {
        QByteArray bytes;
        stream >> bytes;
        *part = bytes.toStdString();
    }
    return stream;
}

namespace ClipboardContents {

QByteArray written(const std::vector<Pasteboard::Item>& items)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << qint64(items.size());
    for (const Pasteboard::Item& item : items)
        stream << QList<Pasteboard::Representation>(item.begin(), item.end());
    return bytes;
}

std::vector<Pasteboard::Item> read(const QByteArray& bytes)
{
    QDataStream stream(bytes);
    qint64 count = 0;
    stream >> count;
    std::vector<Pasteboard::Item> items;
    for (qint64 i = 0; i < count && stream.status() == QDataStream::Ok; ++i) {
        QList<Pasteboard::Representation> item;
        stream >> item;
        items.emplace_back(item.begin(), item.end());
    }
    return stream.status() == QDataStream::Ok ? std::move(items) : std::vector<Pasteboard::Item>();
}

} // namespace ClipboardContents
