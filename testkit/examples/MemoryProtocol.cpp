#include "MemoryProtocol.h"

#include <contracts/NorlisCloudProtocol.h>

#include <QCryptographicHash>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryFile>

#include <algorithm>
#include <cstdio>
#include <limits>
#include <tuple>

using namespace Norlis::Social;

namespace {

constexpr qint64 mebibyte = 1024 * 1024;

/// Ends a request otherwise than with success.
struct Unsuccessful {
    QString reason;
    QString document = {};
    RequestResult result = Error;
};

QString Md5(const QByteArray& content)
{
    return QCryptographicHash::hash(content, QCryptographicHash::Md5).toHex();
}

bool IsSafe(const QString& name)
{
    static const QRegularExpression unsafe("[\\x00-\\x1f\\x7f/\\\\]|^\\.{0,2}$|^(con|prn|aux|nul|com\\d|lpt\\d)(\\.|$)",
                                           QRegularExpression::CaseInsensitiveOption);
    return !unsafe.match(name).hasMatch();
}

Ability::File<NorlisCloudSharingResult>::FileInfo EntryOf(const QString& name, const MemoryCloud::Document& document)
{
    return {document.id,
            name,
            document.content.size(),
            false,
            false,
            "application/pdf",
            document.md5Hash,
            document.createdAt.toString(Qt::ISODate),
            document.modifiedAt.toString(Qt::ISODate)};
}

} // namespace

void MemoryCloud::Put(const QString& name, const QByteArray& content)
{
    Document& document = documents[name];
    document.content = content;
    document.md5Hash = Md5(content);
    document.modifiedAt = QDateTime::currentDateTimeUtc();
    if (document.id.isEmpty()) {
        document.id = "m" + QString::number(++lastId);
        document.createdAt = document.modifiedAt;
    }
}

MemoryProtocol::MemoryProtocol(std::shared_ptr<MemoryCloud> cloud)
    : cloud(std::move(cloud)),
      running(std::make_shared<std::set<qint64>>())
{
}

MemoryProtocol::~MemoryProtocol()
{
    running->clear();
}

/// Has work done in steps, each from an event of its own, until it returns true, which it does with the payload, or
/// throws. Each callback may cancel the request or destroy the protocol.
template <typename... Payload, typename Work>
qint64 MemoryProtocol::Start(const QString& what, const std::function<void(qint64, RequestResult, Payload...)>& done,
                             Work work)
{
    const bool isSignIn = what == "Sign-in";
    if (!isSignedIn && !isSignIn) {
        Tell({-1, what, {}, "Nobody is signed in", "Sign in", OAuth2::FailureKind::NotSignedIn});
        return -1;
    }
    const qint64 id = ++lastId;
    const auto step = [=, running = running, begun = session]() mutable {
        std::tuple<std::decay_t<Payload>...> payload;
        RequestResult result = Success;
        try {
            if (begun != session) {
                throw Unsuccessful{{}, {}, Canceled};
            }
            if (cloud->isAway) {
                throw Unsuccessful{"The cloud cannot be reached"};
            }
            if (!work(id, payload)) {
                return true;
            }
            if (isSignIn) {
                isSignedIn = true;
            }
        } catch (const Unsuccessful& outcome) {
            result = outcome.result;
            if (result == Error) {
                Tell({id, what, outcome.document, outcome.reason, "Try again"});
            }
        }
        if (running->erase(id) > 0) {
            std::apply([&](const auto&... values) { done(id, result, values...); }, payload);
        }
        return false;
    };
    running->insert(id);
    waiting.push_back({id, step});
    Schedule();
    return id;
}

/// One step of one request, so that the event loop is never busy for long.
void MemoryProtocol::Schedule()
{
    if (isScheduled || waiting.empty()) {
        return;
    }
    isScheduled = true;
    const auto runNext = [this, alive = running] {
        const auto running = alive;
        isScheduled = false;
        if (waiting.empty()) {
            return;
        }
        Request next = std::move(waiting.front());
        waiting.pop_front();
        Schedule(); // a callback may wait for others in an event loop of its own
        if (next.step() && running->count(next.id) > 0) {
            waiting.push_back(std::move(next));
            Schedule();
        }
    };
    QMetaObject::invokeMethod(&receiver, runNext, Qt::QueuedConnection);
}

void MemoryProtocol::Tell(const OAuth2::Failure& failure) const
{
    const FailureObserver current = observer;
    if (current) {
        current(failure);
    }
}

QString MemoryProtocol::NameOf(const QString& id) const
{
    for (const auto& [name, document] : cloud->documents) {
        if (document.id == id) {
            return name;
        }
    }
    throw Unsuccessful{"There is no such document"};
}

QString MemoryProtocol::FreeName(const QString& name) const
{
    const int dot = name.lastIndexOf('.') > 0 ? name.lastIndexOf('.') : name.size();
    QString free = name;
    for (int number = 2; cloud->documents.count(free) > 0; ++number) {
        free = name.left(dot) + " (" + QString::number(number) + ')' + name.mid(dot);
    }
    return free;
}

qint64 MemoryProtocol::auth(const QMap<QString, QString>&, std::function<void(qint64, RequestResult)>&& done)
{
    return Start("Sign-in", done, [](qint64, auto&) { return true; });
}

void MemoryProtocol::logout()
{
    isSignedIn = false;
    ++session;
}

bool MemoryProtocol::loggedIn()
{
    return isSignedIn;
}

qint64 MemoryProtocol::userName(std::function<void(qint64, RequestResult, QString)>&& done)
{
    return Start("User name", done, [](qint64, auto& payload) {
        std::get<0>(payload) = "Somebody";
        return true;
    });
}

qint64 MemoryProtocol::userProfile(std::function<void(qint64, RequestResult, QUrl)>&& done)
{
    return Start("User page", done, [](qint64, auto& payload) {
        std::get<0>(payload) = QUrl("memory:somebody");
        return true;
    });
}

qint64 MemoryProtocol::userPic(std::function<void(qint64, RequestResult, QString)>&& done)
{
    return Start("User picture", done, [](qint64, auto&) { return true; });
}

qint64 MemoryProtocol::userPic(std::function<void(qint64, RequestResult, QPixmap)>&& done)
{
    return Start("User picture", done, [](qint64, auto&) { return true; });
}

qint64 MemoryProtocol::retriveFileInfo(const FileFieldData& data,
                                       std::function<void(qint64, RequestResult, FileInfo)>&& done)
{
    return Start("Entry", done, [this, id = data.fields[NorlisCloudProtocol::ID]](qint64, auto& payload) {
        const QString name = NameOf(id);
        std::get<0>(payload) = EntryOf(name, cloud->documents[name]);
        return true;
    });
}

qint64 MemoryProtocol::retriveFileList(const FileFieldData&,
                                       std::function<void(qint64, RequestResult, QList<FileInfo>)>&& done)
{
    return Start("List", done, [this](qint64, auto& payload) {
        for (const auto& [name, document] : cloud->documents) {
            if (IsSafe(name)) {
                std::get<0>(payload) << EntryOf(name, document);
            }
        }
        return true;
    });
}

qint64 MemoryProtocol::downloadFile(const FileFieldData& data, std::function<void(qint64, RequestResult)>&& done,
                                    ProgressCallback&& progress)
{
    const QFileInfo target(data.fields[NorlisCloudProtocol::FILE_NAME]);
    const auto part = std::make_shared<QTemporaryFile>(target.path() + "/.part-XXXXXX");
    const auto download = [=, id = data.fields[NorlisCloudProtocol::ID], progress = std::move(progress),
                           running = running, content = QByteArray()](qint64 operation, auto&) mutable {
        const QString name = NameOf(id);
        if (!part->isOpen()) {
            if (!IsSafe(target.fileName()) || target.isDir() || !part->open()) {
                throw Unsuccessful{"The file cannot be written", name};
            }
            content = cloud->documents[name].content;
        }
        const qint64 size = content.size();
        if (part->pos() < size) {
            const auto piece = content.mid(static_cast<int>(part->pos()), static_cast<int>(size / 64 + 1));
            if (part->write(piece) != piece.size() || !part->flush()) {
                throw Unsuccessful{part->errorString(), name};
            }
            progress(operation, static_cast<int>(part->pos() * 99 / size));
            return false;
        }
        if (content != cloud->documents[name].content) {
            throw Unsuccessful{"The document has changed", name};
        }
        progress(operation, 100);
        if (running->count(operation) > 0) {
            if (std::rename(QFile::encodeName(part->fileName()), QFile::encodeName(target.filePath())) != 0) {
                throw Unsuccessful{"The file cannot be replaced", name};
            }
            part->setAutoRemove(false);
        }
        return true;
    };
    return Start("Download", done, download);
}

qint64 MemoryProtocol::deleteFile(const FileFieldData& data, std::function<void(qint64, RequestResult)>&& done)
{
    return Start("Removal", done, [this, id = data.fields[NorlisCloudProtocol::ID]](qint64, auto&) {
        cloud->documents.erase(NameOf(id));
        return true;
    });
}

qint64 MemoryProtocol::uploadFile(const QString& localPath, const QMap<QString, QString>& fields,
                                  std::function<void(qint64, RequestResult, const Sharing&)>&& done,
                                  ProgressCallback&& progress)
{
    const auto file = std::make_shared<QFile>(localPath);
    const auto upload = [=, progress = std::move(progress), running = running,
                         content = QByteArray()](qint64 operation, auto& payload) mutable {
        QString name = QFileInfo(localPath).fileName();
        const QString id = fields[NorlisCloudProtocol::ID];
        if (!file->isOpen() && (!IsSafe(name) || !QFileInfo(localPath).isFile() || !file->open(QIODevice::ReadOnly))) {
            throw Unsuccessful{"The file cannot be sent", name};
        }
        const QByteArray piece = file->read(file->size() / 64 + 1);
        content += piece;
        if (!piece.isEmpty()) {
            progress(operation, static_cast<int>(std::min<qint64>(content.size() * 99LL / file->size(), 99)));
            return false;
        }
        const QString md5 = fields[NorlisCloudProtocol::MD5_HASH].toLower();
        if (!file->seek(0) || file->readAll() != content || (!md5.isEmpty() && md5 != Md5(content))) {
            throw Unsuccessful{"The file has changed", name};
        }
        name = id.isEmpty() ? FreeName(name) : NameOf(id);
        progress(operation, 100);
        if (running->count(operation) > 0) {
            cloud->Put(name, content);
            const auto& document = cloud->documents[name];
            std::get<0>(payload) = Sharing{true,
                                           document.id,
                                           name,
                                           QUrl("memory:" + document.id),
                                           document.createdAt,
                                           document.modifiedAt,
                                           std::numeric_limits<int>::max()};
        }
        return true;
    };
    return Start("Upload", done, upload);
}

qint64 MemoryProtocol::userQuota(std::function<void(qint64, RequestResult, const QMap<QString, QuotaValue>&)>&& done)
{
    return Start("Quota", done, [this](qint64, auto& payload) {
        qint64 used = 0;
        for (const auto& [name, document] : cloud->documents) {
            used += document.content.size();
        }
        std::get<0>(payload)["pdf"] = {(used + mebibyte - 1) / mebibyte, 1024};
        return true;
    });
}

qint64 MemoryProtocol::retrievePreview(const QMap<QString, QString>&,
                                       std::function<void(qint64, RequestResult, QPixmap)>&& done)
{
    return Start("Preview", done, [](qint64, auto&) -> bool { throw Unsuccessful{"There are no pictures here"}; });
}

void MemoryProtocol::cancelOperation(qint64 id)
{
    if (running->erase(id) > 0) {
        waiting.erase(
            std::remove_if(waiting.begin(), waiting.end(), [id](const Request& each) { return each.id == id; }),
            waiting.end());
    }
}

void MemoryProtocol::SetFailureObserver(FailureObserver newObserver)
{
    observer = std::move(newObserver);
}
