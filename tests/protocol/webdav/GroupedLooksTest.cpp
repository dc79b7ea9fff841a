#include <tests/support/TransferFaultTest.h>

namespace Norlis::Test {

using testing::HasSubstr;

/// Many documents that are changed at once.
class GroupedLooksTest : public TransferFaultTest<> {
protected:
    static constexpr int count = 40;

    QString Name(int number) const
    {
        return QString("%1.pdf").arg(number);
    }

    std::vector<AnswerPtr<Social::NorlisCloudSharingResult>> Uploads()
    {
        std::vector<AnswerPtr<Social::NorlisCloudSharingResult>> uploads;
        for (int number = 0; number < count; ++number) {
            uploads.push_back(client.Upload(LocalFile(Name(number), "content " + QByteArray::number(number))));
        }
        return uploads;
    }

    QStringList PutMany()
    {
        for (int number = 0; number < count; ++number) {
            server.Put(Name(number), "content");
        }
        const auto list = client.List();
        EXPECT_TRUE(list->Succeeds());
        QStringList ids;
        for (const auto& file : list->payload) {
            ids.append(file.id);
        }
        server.ForgetRequests();
        return ids;
    }

    std::vector<AnswerPtr<>> Removals(const QStringList& ids)
    {
        std::vector<AnswerPtr<>> removals;
        for (const QString& id : ids) {
            removals.push_back(client.Remove(id));
        }
        return removals;
    }

    /// How often the collection was listed.
    int Lists() const
    {
        const auto requests = server.Requests("PROPFIND");
        return static_cast<int>(std::count_if(requests.begin(), requests.end(), [](const SeenRequest& request) {
            return request.headers.Value("Depth") == "1";
        }));
    }

    /// And that its document is what is left.
    void ExpectThatOneRemovalFails(const QStringList& ids)
    {
        int failures = 0;
        for (const auto& removal : Removals(ids)) {
            ASSERT_TRUE(WaitUntil([&] { return removal->Came(); }));
            failures += removal->result == Social::Success ? 0 : 1;
        }
        EXPECT_EQ(failures, 1);
        EXPECT_EQ(server.Names().size(), 1);
    }
};

TEST_F(GroupedLooksTest, ManyUploadsAreLookedAtByFewLists)
{
    LearnTheServer();
    for (const auto& upload : Uploads()) {
        ASSERT_TRUE(upload->Succeeds());
    }
    EXPECT_EQ(server.Names().size(), count);
    EXPECT_GT(Lists(), 0);
    EXPECT_LE(server.Count("PUT") + server.Count("GET") + server.Count("MOVE"), 3 * count);
    EXPECT_LT(server.Count("PROPFIND"), count / 2);
}

TEST_F(GroupedLooksTest, ManyRemovalsAreProvedByFewLists)
{
    for (const auto& removal : Removals(PutMany())) {
        ASSERT_TRUE(removal->Succeeds());
    }
    ExpectOnServer({});
    EXPECT_GT(Lists(), 0);
    EXPECT_LT(server.Count("PROPFIND"), count + count / 2); // each version is looked at while it is locked
}

TEST_F(GroupedLooksTest, ADocumentThatTheListStillShowsIsNotRemoved)
{
    const QStringList ids = PutMany();
    server.Misbehave("DELETE", OnlyClaimsToDoIt(204));
    ExpectThatOneRemovalFails(ids);
    EXPECT_THAT(Reason(), HasSubstr("still a document of that name"));
}

TEST_F(GroupedLooksTest, AnUploadThatTheListDoesNotShowIsNotReported)
{
    LearnTheServer();
    server.Misbehave("MOVE", OnlyClaimsToDoIt(201));
    int failures = 0;
    for (const auto& upload : Uploads()) {
        ASSERT_TRUE(WaitUntil([&] { return upload->Came(); }));
        failures += upload->result == Social::Success ? 0 : 1;
    }
    EXPECT_EQ(failures, 1);
    EXPECT_EQ(server.Names().size(), count - 1);
}

TEST_F(GroupedLooksTest, WithoutAListEachIsLookedAtByItself)
{
    LearnTheServer();
    const Misbehaviour refusesToList = {[](Wire& wire) {
        const bool isList = wire.Request().headers.Value("Depth") == "1";
        wire.Send((isList ? ServerResponse{403, {}, {}} : wire.Do(wire.Request())).Bytes());
        wire.Finish();
    }};
    server.Misbehave(When("PROPFIND").Always(), refusesToList);
    QStringList ids;
    for (const auto& upload : Uploads()) {
        ASSERT_TRUE(upload->Succeeds());
        ids.append(upload->payload.id);
    }
    for (const auto& removal : Removals(ids)) {
        ASSERT_TRUE(removal->Succeeds());
    }
    ExpectOnServer({});
}

TEST_F(GroupedLooksTest, AHiddenNameIsLookedAtByItself)
{
    const Misbehaviour hidesNames = {[](Wire& wire) {
        ServerResponse answer = wire.Do(wire.Request());
        if (wire.Request().headers.Value("Depth") == "1") {
            for (int begin = 0; (begin = answer.body.indexOf("/documents/.", begin)) >= 0;) {
                answer.body.replace(begin, 12, "/documents/_");
            }
        }
        wire.Send(answer.Bytes());
        wire.Finish();
    }};
    LearnTheServer();
    std::vector<AnswerPtr<Social::NorlisCloudSharingResult>> uploads;
    for (int number = 0; number < count; ++number) {
        uploads.push_back(client.Upload(LocalFile('.' + Name(number), "content")));
    }
    QStringList ids;
    for (const auto& upload : uploads) {
        ASSERT_TRUE(upload->Succeeds());
        ids.append(upload->payload.id);
    }
    server.Misbehave(When("PROPFIND").Always(), hidesNames);
    server.Misbehave("DELETE", OnlyClaimsToDoIt(204));
    ExpectThatOneRemovalFails(ids);
}

} // namespace Norlis::Test
