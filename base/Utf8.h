#pragma once

#include <QByteArray>
#include <QString>

#include <string>

namespace Norlis {

/// The text with every character of it. QString's own functions drop a byte order mark in front, but a name may begin
/// with one.
inline QString FromUtf8(const QByteArray& bytes)
{
    const QString text = QString::fromUtf8(bytes);
    return bytes.startsWith("\xef\xbb\xbf") ? QChar(QChar::ByteOrderMark) + text : text;
}

inline QString FromUtf8(const std::string& bytes)
{
    return FromUtf8(QByteArray::fromRawData(bytes.data(), static_cast<int>(bytes.size())));
}

} // namespace Norlis
