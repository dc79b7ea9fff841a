#pragma once

#include <QHash>
#include <QString>

namespace Norlis::Social {

/// Which documents have been uploaded since a list was begun. Whoever gets that list does not take the version that it
/// tells of such a document for the newer one, so it shows that version to nobody.
class UploadOrder {
public:
    using Time = int;

    void Note(const QString& document)
    {
        last[document] = ++now;
    }

    Time Now() const
    {
        return now;
    }

    bool WasUploadedAfter(Time time, const QString& document) const
    {
        return last.value(document) > time;
    }

private:
    Time now = 0;
    QHash<QString, Time> last;
};

} // namespace Norlis::Social
