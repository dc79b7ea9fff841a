#include "PdfSearch.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

namespace Norlis::Window {

bool IsPdf(const QString& path)
{
    constexpr int headerPlace = 1024;
    QFile file(path);
    return QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly) && file.read(headerPlace).contains("%PDF-");
}

PdfSearch::PdfSearch()
{
    pool.setMaxThreadCount(1);
}

PdfSearch::~PdfSearch()
{
    isStopped = true;
    pool.clear();
    pool.waitForDone();
}

void PdfSearch::Start(const QStringList& paths)
{
    pool.start([this, paths] { // the destructor waits for it
        QStringList found;
        for (const QString& path : paths) {
            if (QFileInfo(path).isDir()) {
                found.append(Find(path, maxFound + 1 - found.size()));
            } else {
                found.append(path);
            }
        }
        if (!isStopped) {
            QMetaObject::invokeMethod(
                this, [this, found] { emit Found(found); }, Qt::QueuedConnection);
        }
    });
}

QStringList PdfSearch::Find(const QString& folder, int limit) const
{
    QStringList found;
    QDirIterator files(folder, {"*.pdf"}, QDir::Files, QDirIterator::Subdirectories); // it ignores case
    while (files.hasNext() && found.size() < limit && !isStopped) {
        const QString path = files.next();
        if (IsPdf(path)) {
            found.append(path);
        }
    }
    found.sort();
    return found;
}

} // namespace Norlis::Window
