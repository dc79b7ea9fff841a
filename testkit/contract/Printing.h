#pragma once

#include <QByteArray>
#include <QString>

#include <ostream>

// How GoogleTest shows texts. It looks for these where the types are, in the global namespace.

inline void PrintTo(const QString& text, std::ostream* stream)
{
    *stream << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QByteArray& bytes, std::ostream* stream)
{
    *stream << '"' << bytes.left(60).toStdString() << "\" (" << bytes.size() << " bytes)";
}
