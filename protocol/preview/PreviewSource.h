#pragma once

#include "DocumentPieces.h"

#include <QImage>
#include <QObject>
#include <QSize>
#include <QString>

#include <functional>
#include <memory>

namespace Norlis::Social {

/// A page of a version of a PDF document.
struct PreviewSubject {
    QString document; ///< id
    QString name;     ///< for error texts
    QString version;  ///< changes whenever the content does
    int page = 1;
    QString localPath = {}; ///< of a file on this computer, which no source is asked for
};

/// Where a PreviewQueue gets documents from. Used on the queue's thread.
class PreviewSource {
public:
    /// A file that stays where it is as long as this object exists.
    class File {
    public:
        virtual ~File() = default;
        virtual QString Path() const = 0;
    };

    /// A fetch in progress. Destroying it gives the fetch up.
    class Fetch : public QObject {};

    /// One of: a file to render, a document to be rendered from elsewhere, a finished preview, or the reason why there
    /// is none of these.
    struct Result {
        std::shared_ptr<const File> file;
        QImage image;
        QString reason;
        bool isSignedOut = false; ///< see Reply
        std::shared_ptr<DocumentPieces> pieces = {};
    };
    using Done = std::function<void(Result)>;

    virtual ~PreviewSource() = default;

    /// Fetches a document, or a preview of its page for a box. Calls done once, from the event loop, unless the fetch
    /// is destroyed before; done may destroy it.
    virtual std::unique_ptr<Fetch> FetchForPreview(const PreviewSubject& subject, const QSize& box, Done done) = 0;
};

/// A document that is rendered where it is.
class FileInPlace : public PreviewSource::File {
public:
    explicit FileInPlace(const QString& path) : path(path) {}

    QString Path() const override
    {
        return path;
    }

private:
    const QString path;
};

/// A fetch whose result is known from the start.
class CompletedFetch : public PreviewSource::Fetch {
public:
    CompletedFetch(PreviewSource::Result result, PreviewSource::Done done);
};

} // namespace Norlis::Social
