#pragma once

#include <QDesktopServices>
#include <QObject>
#include <QStringList>
#include <QUrl>

namespace Norlis::Test {

/// Takes what would be opened by another program.
class OpenedFiles : public QObject {
    Q_OBJECT

public:
    OpenedFiles()
    {
        QDesktopServices::setUrlHandler("file", this, "Open");
    }

    ~OpenedFiles() override
    {
        QDesktopServices::unsetUrlHandler("file");
    }

    QStringList paths;

public slots:
    void Open(const QUrl& url)
    {
        paths.append(url.toLocalFile());
    }
};

} // namespace Norlis::Test
