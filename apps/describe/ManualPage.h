#pragma once

#include <QDate>
#include <QString>

namespace Norlis::Describe {

struct Release {
    QString version;
    QDate date;
};

/// The manual page of norlis-cloud, for man(7).
QString TerminalManual(const Release& release);

/// The manual page of norlis-documents.
QString WindowManual(const Release& release);

} // namespace Norlis::Describe
