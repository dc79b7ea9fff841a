#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace Norlis::Social {

/// Texts that nobody may read who reads a log, an error or a file, in every form in which a server could echo them.
class Secrets {
public:
    /// A token or password, of a user if there is one.
    void Add(const QString& user, const QString& token);

    /// The text with every secret in it blotted out.
    QString Redact(QString text) const;

private:
    QList<QString> forms; ///< the longest first
};

} // namespace Norlis::Social
