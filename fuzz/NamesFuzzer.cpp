// Feeds what deals with the names of documents with texts that no system would give a file. The first byte tells how
// the rest is meant: UTF-8 when it is even, UTF-16 (which may have halves of characters in it) when it is odd; and it
// is the number that a name is given.

#include "Require.h"

#include <files/DocumentNames.h>

#include <algorithm>
#include <cstring>

namespace {

using namespace Norlis::Files;
using Norlis::Fuzz::Require;

QString NameOf(const uint8_t* data, size_t size, bool isUtf16)
{
    if (!isUtf16) {
        return QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<int>(size));
    }
    QString name(static_cast<int>(size / sizeof(QChar)), Qt::Uninitialized);
    std::memcpy(name.data(), data, size / sizeof(QChar) * sizeof(QChar));
    return name;
}

/// What everybody who puts a name into a path relies on.
void CheckName(const QString& name)
{
    const QByteArray bytes = name.toUtf8();
    Require(!bytes.isEmpty() && bytes.size() <= 255 && bytes != "." && bytes != "..");
    Require(std::none_of(bytes.begin(), bytes.end(), [](char byte) {
        return byte == '/' || byte == '\\' || static_cast<unsigned char>(byte) < 0x20 || byte == 0x7f;
    }));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0) {
        return 0;
    }
    const int number = data[0];
    const QString name = NameOf(data + 1, size - 1, number % 2 == 1);
    const QString numbered = NumberedName(name, number);
    if (!ValidateName(name)) {
        CheckName(name);
        CheckName(numbered);
        Require(!ValidateName(numbered));
        Require(numbered != NumberedName(name, number + 1));
    }

    const QString id = IdOfName(name);
    Require(id.size() == 15 && std::all_of(id.begin(), id.end(), [](QChar character) {
                return (character >= 'a' && character <= 'z') || (character >= '2' && character <= '7');
            }));
    Require(id != IdOfName(name + 'x'));
    return 0;
}
