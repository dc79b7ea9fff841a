#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace Norlis::Social {

/// Texts that must not appear in logs, errors and files, in every form in which a server could echo them.
class Secrets {
public:
    /// A token or password; the user may be empty.
    void Add(const QString& user, const QString& token);

    /// The text with every secret in it replaced by asterisks.
    QString Redact(QString text) const;

private:
    QList<QString> forms; ///< the longest first
};

} // namespace Norlis::Social
