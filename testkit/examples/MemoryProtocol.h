#pragma once

#include <contracts/ICloudProtocol.h>
#include <contracts/IFailureSource.h>

#include <QDateTime>
#include <QObject>

#include <deque>
#include <map>
#include <memory>
#include <set>

/// The documents that all users of a cloud in memory share.
struct MemoryCloud {
    struct Document {
        QString id;
        QByteArray content;
        QString md5Hash;
        QDateTime createdAt;
        QDateTime modifiedAt;
    };

    void Put(const QString& name, const QByteArray& content);

    std::map<QString, Document> documents; ///< by name
    bool isAway = false;
    int lastId = 0;
};

/// A cloud protocol of one's own: the documents of a MemoryCloud. Works step by step from the event loop.
class MemoryProtocol : public Norlis::PDF::Cloud::ICloudProtocol, public Norlis::PDF::Cloud::IFailureSource {
public:
    using RequestResult = Norlis::Social::RequestResult;
    using Sharing = Norlis::Social::NorlisCloudSharingResult;

    explicit MemoryProtocol(std::shared_ptr<MemoryCloud> cloud);
    ~MemoryProtocol() override;

    qint64 auth(const QMap<QString, QString>& fields, std::function<void(qint64, RequestResult)>&& done) override;
    void logout() override;
    bool loggedIn() override;
    qint64 userName(std::function<void(qint64, RequestResult, QString)>&& done) override;
    qint64 userProfile(std::function<void(qint64, RequestResult, QUrl)>&& done) override;
    qint64 userPic(std::function<void(qint64, RequestResult, QString)>&& done) override;
    qint64 userPic(std::function<void(qint64, RequestResult, QPixmap)>&& done) override;
    qint64 retriveFileInfo(const FileFieldData& data,
                           std::function<void(qint64, RequestResult, FileInfo)>&& done) override;
    qint64 retriveFileList(const FileFieldData& data,
                           std::function<void(qint64, RequestResult, QList<FileInfo>)>&& done) override;
    qint64 downloadFile(const FileFieldData& data, std::function<void(qint64, RequestResult)>&& done,
                        ProgressCallback&& progress) override;
    qint64 deleteFile(const FileFieldData& data, std::function<void(qint64, RequestResult)>&& done) override;
    qint64 uploadFile(const QString& localPath, const QMap<QString, QString>& fields,
                      std::function<void(qint64, RequestResult, const Sharing&)>&& done,
                      ProgressCallback&& progress) override;
    qint64 userQuota(std::function<void(qint64, RequestResult, const QMap<QString, QuotaValue>&)>&& done) override;
    qint64 retrievePreview(const QMap<QString, QString>& fields,
                           std::function<void(qint64, RequestResult, QPixmap)>&& done) override;
    void cancelOperation(qint64 id) override;
    void SetFailureObserver(FailureObserver observer) override;

private:
    struct Request {
        qint64 id;
        std::function<bool()> step; ///< false when the request is over
    };

    template <typename... Payload, typename Work>
    qint64 Start(const QString& what, const std::function<void(qint64, RequestResult, Payload...)>& done, Work work);
    void Schedule();
    void Tell(const Norlis::Social::OAuth2::Failure& failure) const;
    QString NameOf(const QString& id) const;
    QString FreeName(const QString& name) const;

    const std::shared_ptr<MemoryCloud> cloud;
    FailureObserver observer;
    std::deque<Request> waiting;
    std::shared_ptr<std::set<qint64>>
        running;      ///< outlives the protocol, for who has called back, to ask whether to go on
    QObject receiver; ///< of the events that run the requests
    bool isScheduled = false;
    bool isSignedIn = false;
    int session = 0; ///< begins with the object and with each logout
    qint64 lastId = 0;
};
