#pragma once

// The abilities with nothing beyond what the contract promises.

#include <contracts/Export.h>
#include <contracts/RequestResult.h>

#include <QList>
#include <QMap>
#include <QPixmap>
#include <QString>
#include <QUrl>

#include <functional>

namespace Norlis::Social::Ability {

class NORLIS_CONTRACTS_EXPORT Cancel {
public:
    virtual ~Cancel() = default;

    virtual void cancelOperation(qint64 id) = 0;
};

class NORLIS_CONTRACTS_EXPORT Auth : public virtual Cancel {
public:
    virtual qint64 auth(const QMap<QString, QString>& fields, std::function<void(qint64, RequestResult)>&& done) = 0;

    virtual void logout() = 0;

    virtual bool loggedIn() = 0;

    virtual qint64 userName(std::function<void(qint64, RequestResult, QString)>&& done) = 0;

    virtual qint64 userProfile(std::function<void(qint64, RequestResult, QUrl)>&& done) = 0;

    virtual qint64 userPic(std::function<void(qint64, RequestResult, QString)>&& done) = 0;

    virtual qint64 userPic(std::function<void(qint64, RequestResult, QPixmap)>&& done) = 0;
};

template <typename SharingResult>
class NORLIS_CONTRACTS_EXPORT File : public virtual Cancel {
public:
    struct FileFieldData {
        QMap<QString, QString> fields = {};
        QMap<QString, QString> extra = {};
    };

    struct FileInfo {
        QString id = {};
        QString name = {};
        qint64 size = 0;
        bool isFolder = false;
        bool isShared = false;
        QString mimeType = {};
        QString md5Hash = {};
        QString createdAt = {};
        QString modifiedAt = {};
    };

    virtual qint64 retriveFileInfo(const FileFieldData& data,
                                   std::function<void(qint64, RequestResult, FileInfo)>&& done) = 0;

    virtual qint64 retriveFileList(const FileFieldData& data,
                                   std::function<void(qint64, RequestResult, QList<FileInfo>)>&& done) = 0;

    virtual qint64 downloadFile(const FileFieldData& data, std::function<void(qint64, RequestResult)>&& done,
                                std::function<void(qint64, int)>&& progress) = 0;

    virtual qint64 deleteFile(const FileFieldData& data, std::function<void(qint64, RequestResult)>&& done) = 0;

    virtual qint64 uploadFile(const QString& localPath, const QMap<QString, QString>& fields,
                              std::function<void(qint64, RequestResult, const SharingResult&)>&& done,
                              std::function<void(qint64, int)>&& progress) = 0;
};

class NORLIS_CONTRACTS_EXPORT Quota : public virtual Cancel {
public:
    struct QuotaValue {
        qint64 first = 0;
        qint64 second = 0;
    };

    virtual ~Quota() = default;

    virtual qint64 userQuota(std::function<void(qint64, RequestResult, const QMap<QString, QuotaValue>&)>&& done) = 0;
};

class NORLIS_CONTRACTS_EXPORT Preview : public virtual Cancel {
public:
    virtual ~Preview() = default;

    virtual qint64 retrievePreview(const QMap<QString, QString>& fields,
                                   std::function<void(qint64, RequestResult, QPixmap)>&& done) = 0;
};

} // namespace Norlis::Social::Ability

namespace Norlis::Social {

template <typename... Abilities>
class NORLIS_CONTRACTS_EXPORT Protocol : public Abilities... {
};

} // namespace Norlis::Social
