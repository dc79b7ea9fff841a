#pragma once

#include <tests/support/FolderUnderTest.h>
#include <tests/support/Waiting.h>

#include <protocol/folder/FolderService.h>

#include <QMap>
#include <QTemporaryDir>

#include <map>
#include <memory>
#include <optional>

namespace Norlis::Test {

/// Uses a folder by a service object of its own, on the thread of the test, so that the test can do something in the
/// middle of what the service does.
class FolderUser {
public:
    explicit FolderUser(Social::OAuth2::AuthInfo settings) : settings(std::move(settings)) {}

    /// Returns its id; see ReplyTo.
    qint64 Begin(const Social::Request::Any& request)
    {
        service.Start(++lastId, request);
        return lastId;
    }

    /// Nothing as long as it has not come.
    std::optional<Social::Reply> ReplyTo(qint64 id) const
    {
        const auto reply = replies.find(id);
        return reply != replies.end() ? std::optional(reply->second) : std::nullopt;
    }

    Social::Reply Do(const Social::Request::Any& request)
    {
        const qint64 id = Begin(request);
        WaitUntil([&] { return ReplyTo(id).has_value(); });
        return ReplyTo(id).value_or(Social::FailureReply("", "", "there was no reply"));
    }

    bool SignIn()
    {
        return Do(Social::Request::SignIn{"token"}).result == Social::Success;
    }

    QList<Social::CloudFile> List()
    {
        const auto reply = Do(Social::Request::List{});
        const auto* files = std::get_if<QList<Social::CloudFile>>(&reply.payload);
        return files ? *files : QList<Social::CloudFile>();
    }

    Social::CloudFile Entry(const QString& name)
    {
        for (const auto& file : List()) {
            if (file.name == name) {
                return file;
            }
        }
        return {};
    }

    /// A request to upload a file of that content, which it writes first.
    /// \param id of the document to replace; empty for a new one
    Social::Request::Upload Upload(const QString& fileName, const QByteArray& content, const QString& id = {})
    {
        WriteFile(LocalPath(fileName), content);
        return {LocalPath(fileName), id, {}, {}, std::make_shared<Social::TransferToken>()};
    }

    Social::Request::Download Download(const QString& id, const QString& fileName) const
    {
        return {id, LocalPath(fileName), {true, {}}, std::make_shared<Social::TransferToken>()};
    }

    QString LocalPath(const QString& fileName) const
    {
        return local.filePath(fileName);
    }

private:
    const Social::OAuth2::AuthInfo settings;
    QTemporaryDir local;
    std::map<qint64, Social::Reply> replies;
    qint64 lastId = 0;
    Social::FolderService service{
        settings,
        {[this](qint64 id, Social::Reply reply) { replies.emplace(id, std::move(reply)); }, [](qint64, int) {}}};
};

inline std::string ReasonOf(const Social::Reply& reply)
{
    return reply.failure.reason.toStdString();
}

} // namespace Norlis::Test
