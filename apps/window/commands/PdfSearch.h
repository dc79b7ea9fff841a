#pragma once

#include <QObject>
#include <QStringList>
#include <QThreadPool>

#include <atomic>

namespace Norlis::Window {

/// Whether a file says of itself that it is a PDF document: ISO 32000-1, annex H.3, has viewers accept the header
/// anywhere in the first 1024 bytes.
bool IsPdf(const QString& path);

/// Finds the PDF documents in folders, and in the folders in these, on another thread.
class PdfSearch : public QObject {
    Q_OBJECT

public:
    PdfSearch();
    ~PdfSearch() override;

    /// What has more than this is not searched to its end.
    static constexpr int maxFound = 10'000;

    /// Looks for them in those of the paths that are folders; the others are taken as they are. Hidden folders are left
    /// out, and what is reached by links to folders.
    void Start(const QStringList& paths);

signals:
    /// \param paths sorted within each folder; more than maxFound when the search was broken off
    void Found(const QStringList& paths);

private:
    QStringList Find(const QString& folder, int limit) const;

    std::atomic<bool> isStopped = false;
    QThreadPool pool;
};

} // namespace Norlis::Window
