#pragma once

#include <QObject>
#include <QPixmap>
#include <QString>

class QMessageBox;

namespace Norlis::Host {
class CloudSession;
}

namespace Norlis::Window {

/// Shows page one of the two versions of a document side by side in a question about them: the one on this computer
/// and the one in the cloud. Each appears when it has been drawn.
class ConflictPictures : public QObject {
    Q_OBJECT

public:
    /// \param path of the local copy
    /// \param box  the question, which owns this object
    ConflictPictures(Host::CloudSession& session, const QString& id, const QString& path, QMessageBox& box);

private:
    void Show();

    QMessageBox& box;
    QPixmap here;    ///< null while it is not known
    QPixmap inCloud; ///< the same
};

} // namespace Norlis::Window
