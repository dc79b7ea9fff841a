#pragma once

#include <host/session/CloudSession.h>
#include <NorlisTestKit/ScriptedProtocol.h>

#include <QSignalSpy>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Norlis::Test {

using namespace TestKit;

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::UnorderedElementsAre;

using CloudEntry = PDF::Cloud::ICloudProtocol::FileInfo;
using Status = PDF::FileInfo::CloudStatus;
using PreviewSize = PDF::FileInfo::PreviewSize;

std::string HashOf(const QByteArray& content);

/// What a files list says of a document whose content is this text.
CloudEntry EntryOf(const QString& id, const QByteArray& content = "content");

/// A session over a scripted cloud, real files and a real store. What the session emits is written down, one line per
/// signal.
class SessionTest : public testing::Test {
protected:
    SessionTest();
    ~SessionTest() override;

    void Open();

    /// Destroys the session and makes another one over the same data.
    void Reopen();

    /// The lines since the last call.
    std::vector<std::string> Events();

    /// Waits until a line begins so, or that many lines of those that were not taken yet.
    bool WaitForEvent(const std::string& beginning, std::ptrdiff_t count = 1);
    std::ptrdiff_t CountOf(const std::string& beginning) const;

    /// Waits until the protocol was asked that often.
    bool WaitForCalls(const std::string& operation, std::size_t count);

    /// Lets everything that the session has begun come to its end, as far as the cloud need not answer.
    void LetWorkFinish();

    QString PathOf(const QString& name) const;
    QString Write(const QString& name, const QByteArray& content);
    QByteArray Read(const QString& path) const;
    QStringList FilesIn(const QString& path) const;

    /// Requests the list, answers it and waits until it is merged.
    void Refresh(const QList<CloudEntry>& entries);

    /// Sends a file and has the cloud keep it.
    void Upload(const QString& path, const QString& id);

    /// Fetches a document into the documents' folder and has the cloud deliver.
    void Download(const QString& id, const QByteArray& content);

    /// Lets the cloud write what a running download wants.
    void Deliver(const QByteArray& content);

    std::shared_ptr<PDF::FileInfo> Held(const QString& id);
    Status StatusOf(const QString& id);
    QStringList Ids();

    /// Answers the last call of the operation.
    template <typename... Payload>
    void Answer(const std::string& operation, Social::RequestResult result, const Payload&... payload)
    {
        protocol->Answer(protocol->LastId(operation), result, payload...);
    }

    /// As Answer with an error of which the service says why.
    void AnswerError(const std::string& operation, const QString& reason,
                     Social::OAuth2::FailureKind kind = Social::OAuth2::FailureKind::Other);

    const QTemporaryDir root;
    const QString dataFolder = root.filePath("data");
    const QString folder = root.filePath("documents");
    const std::shared_ptr<ScriptedProtocol> protocol = std::make_shared<ScriptedProtocol>();
    Social::OAuth2::AuthInfo service; ///< used instead of the scripted protocol once it names a service
    std::unique_ptr<Host::CloudSession> session;
    Host::CloudProblem problem; ///< the last one

private:
    std::vector<std::string> events;
    int fences = 0;
};

/// What an upload is answered with.
Social::NorlisCloudSharingResult SharingOf(const QString& id, const QString& name);

} // namespace Norlis::Test
