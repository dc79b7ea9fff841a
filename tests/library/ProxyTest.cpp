#include <tests/support/RecordingCloudProtocol.h>

#include <NorlisCloud/NorlisCloudProtocolProxy.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <type_traits>

namespace Norlis::Test {

namespace {

using PDF::Cloud::ICloudProtocol;
using PDF::Cloud::NorlisCloudProtocolProxy;
using Social::RequestResult;
using testing::ElementsAre;
using testing::IsEmpty;

/// How often a callback was called and copied.
struct Counts {
    int calls = 0;
    int copies = 0;
};

class CountingCallback {
public:
    explicit CountingCallback(Counts& counts) : counts(&counts) {}
    CountingCallback(const CountingCallback& other) : counts(other.counts)
    {
        ++counts->copies;
    }
    CountingCallback(CountingCallback&&) = default;

    template <typename... Payload>
    void operator()(qint64 id, int resultOrProgress, const Payload&...) const
    {
        EXPECT_EQ(id, 7);
        EXPECT_TRUE(resultOrProgress == Social::Error || resultOrProgress == 50);
        ++counts->calls;
    }

private:
    Counts* counts;
};

template <typename... Payload>
using Done = std::function<void(qint64, RequestResult, Payload...)>;

struct Arguments {
    QMap<QString, QString> fields;
    ICloudProtocol::FileFieldData data;
    QString localPath;
};

/// One request operation: how to call it, and which of the arguments must arrive as they are.
struct Operation {
    const char* name; ///< as it is recorded
    int callbacks;
    std::function<qint64(ICloudProtocol&, const Arguments&, CountingCallback)> call;
    std::function<const void*(const Arguments&)> fields;
};

const void* Nothing(const Arguments&)
{
    return nullptr;
}

const void* Fields(const Arguments& arguments)
{
    return &arguments.fields;
}

const void* Data(const Arguments& arguments)
{
    return &arguments.data;
}

// Each callback is made of a moved functor, so that every copy counted later was made on the way.
const Operation operations[] = {
    {"auth", 1,
     [](auto& proxy, auto& arguments, auto callback) {
         return proxy.auth(arguments.fields, Done<>(std::move(callback)));
     },
     Fields},
    {"userName", 1,
     [](auto& proxy, auto&, auto callback) { return proxy.userName(Done<QString>(std::move(callback))); }, Nothing},
    {"userProfile", 1,
     [](auto& proxy, auto&, auto callback) { return proxy.userProfile(Done<QUrl>(std::move(callback))); }, Nothing},
    {"userPic(QString)", 1,
     [](auto& proxy, auto&, auto callback) { return proxy.userPic(Done<QString>(std::move(callback))); }, Nothing},
    {"userPic(QPixmap)", 1,
     [](auto& proxy, auto&, auto callback) { return proxy.userPic(Done<QPixmap>(std::move(callback))); }, Nothing},
    {"retriveFileInfo", 1,
     [](auto& proxy, auto& arguments, auto callback) {
         return proxy.retriveFileInfo(arguments.data, Done<ICloudProtocol::FileInfo>(std::move(callback)));
     },
     Data},
    {"retriveFileList", 1,
     [](auto& proxy, auto& arguments, auto callback) {
         return proxy.retriveFileList(arguments.data, Done<QList<ICloudProtocol::FileInfo>>(std::move(callback)));
     },
     Data},
    {"downloadFile", 2,
     [](auto& proxy, auto& arguments, auto callback) {
         ICloudProtocol::ProgressCallback progress = CountingCallback(callback);
         return proxy.downloadFile(arguments.data, Done<>(std::move(callback)), std::move(progress));
     },
     Data},
    {"deleteFile", 1,
     [](auto& proxy, auto& arguments, auto callback) {
         return proxy.deleteFile(arguments.data, Done<>(std::move(callback)));
     },
     Data},
    {"uploadFile", 2,
     [](auto& proxy, auto& arguments, auto callback) {
         ICloudProtocol::ProgressCallback progress = CountingCallback(callback);
         return proxy.uploadFile(arguments.localPath, arguments.fields,
                                 Done<const Social::NorlisCloudSharingResult&>(std::move(callback)),
                                 std::move(progress));
     },
     Fields},
    {"userQuota", 1,
     [](auto& proxy, auto&, auto callback) {
         return proxy.userQuota(Done<const QMap<QString, ICloudProtocol::QuotaValue>&>(std::move(callback)));
     },
     Nothing},
    {"retrievePreview", 1,
     [](auto& proxy, auto& arguments, auto callback) {
         return proxy.retrievePreview(arguments.fields, Done<QPixmap>(std::move(callback)));
     },
     Fields},
};

std::ostream& operator<<(std::ostream& stream, const Operation& operation)
{
    return stream << operation.name;
}

/// A proxy whose protocol object only records; seen through the interface, as the cloud manager sees it.
class ProxyTest : public testing::Test {
protected:
    ProxyTest()
    {
        Recorded() = {};
        proxy = std::make_unique<NorlisCloudProtocolProxy>(Social::OAuth2::AuthInfo{}, "name");
    }

    std::unique_ptr<ICloudProtocol> proxy;
};

class ProxyOperationTest : public ProxyTest, public testing::WithParamInterface<Operation> {};

TEST_P(ProxyOperationTest, ReachesTheProtocolObjectOnceWithTheSameArguments)
{
    const auto& [name, callbacks, call, fields] = GetParam();
    const Arguments arguments;
    Counts counts;

    call(*proxy, arguments, CountingCallback(counts));

    EXPECT_THAT(Recorded().calls, ElementsAre(name));
    EXPECT_EQ(Recorded().fields, fields(arguments));
    if (std::string(name) == "uploadFile") {
        EXPECT_EQ(Recorded().localPath, &arguments.localPath);
    }
    EXPECT_EQ(counts.calls, 0);
}

TEST_P(ProxyOperationTest, ReturnsTheProtocolObjectsId)
{
    for (const qint64 id : {qint64{1}, qint64{-1}, qint64{0}, std::numeric_limits<qint64>::max()}) {
        Recorded().nextId = id;
        Counts counts;
        EXPECT_EQ(GetParam().call(*proxy, {}, CountingCallback(counts)), id);
    }
}

TEST_P(ProxyOperationTest, HandsTheCallbacksOnWithoutCopyingThem)
{
    Counts counts;
    GetParam().call(*proxy, {}, CountingCallback(counts));
    EXPECT_EQ(counts.copies, GetParam().callbacks - 1) << "but for the copy that the test itself makes";

    Recorded().answer();
    EXPECT_EQ(counts.calls, GetParam().callbacks);
}

INSTANTIATE_TEST_SUITE_P(Proxy, ProxyOperationTest, testing::ValuesIn(operations), [](const auto& info) {
    std::string name = info.param.name;
    name.erase(std::remove_if(name.begin(), name.end(), [](char c) { return c == '(' || c == ')'; }), name.end());
    return name;
});

TEST_F(ProxyTest, LogoutReachesTheProtocolObject)
{
    proxy->logout();
    EXPECT_THAT(Recorded().calls, ElementsAre("logout"));
}

TEST_F(ProxyTest, LoggedInIsTheProtocolObjectsAnswer)
{
    for (const bool answer : {true, false}) {
        Recorded().loggedIn = answer;
        EXPECT_EQ(proxy->loggedIn(), answer);
    }
    EXPECT_THAT(Recorded().calls, ElementsAre("loggedIn", "loggedIn"));
}

TEST_F(ProxyTest, CancelReachesTheOneCancelAbilityThroughWhicheverAbilityItIsCalled)
{
    Social::Ability::Auth& auth = *proxy;
    Social::Ability::File<Social::NorlisCloudSharingResult>& file = *proxy;
    Social::Ability::Quota& quota = *proxy;
    Social::Ability::Preview& preview = *proxy;
    Social::Ability::Cancel& cancel = *proxy;
    qint64 id = 1;
    for (Social::Ability::Cancel* ability :
         {static_cast<Social::Ability::Cancel*>(&auth), static_cast<Social::Ability::Cancel*>(&file),
          static_cast<Social::Ability::Cancel*>(&quota), static_cast<Social::Ability::Cancel*>(&preview), &cancel}) {
        EXPECT_EQ(ability, &cancel);
        ability->cancelOperation(++id);
        EXPECT_EQ(Recorded().cancelledId, id);
    }
    EXPECT_EQ(Recorded().calls.size(), 5u);
}

TEST_F(ProxyTest, ConstructorHandsItsArgumentsOnAndGivesNoParent)
{
    Recorded() = {};
    Social::OAuth2::AuthInfo authInfo;
    authInfo.serviceUrl = QUrl("file:///cloud");
    authInfo.cacheFolder = "/cache";
    authInfo.storageLimit = 12;
    int failures = 0;
    authInfo.onFailure = [&](const Social::OAuth2::Failure&) { ++failures; };

    const NorlisCloudProtocolProxy second(authInfo, "Ünicode name");

    EXPECT_EQ(Recorded().constructed, 1);
    EXPECT_EQ(Recorded().authInfo.serviceUrl, authInfo.serviceUrl);
    EXPECT_EQ(Recorded().authInfo.cacheFolder, authInfo.cacheFolder);
    EXPECT_EQ(Recorded().authInfo.storageLimit, authInfo.storageLimit);
    Recorded().authInfo.onFailure({});
    EXPECT_EQ(failures, 1);
    EXPECT_EQ(Recorded().name, "Ünicode name");
    EXPECT_EQ(Recorded().parent, nullptr);
    EXPECT_THAT(Recorded().calls, IsEmpty());
}

TEST_F(ProxyTest, DestructionDestroysTheProtocolObjectOnce)
{
    EXPECT_EQ(Recorded().constructed, 1);
    EXPECT_EQ(Recorded().destroyed, 0);
    proxy.reset();
    EXPECT_EQ(Recorded().destroyed, 1);
    EXPECT_THAT(Recorded().calls, IsEmpty());
}

TEST_F(ProxyTest, ExceptionOfTheProtocolObjectReachesTheCaller)
{
    Recorded() = {};
    Recorded().constructorThrows = true;
    EXPECT_THROW(NorlisCloudProtocolProxy({}, "name"), std::invalid_argument);
    EXPECT_EQ(Recorded().destroyed, 0);
}

TEST_F(ProxyTest, InterfaceIsItsSoleBaseAndItCannotBeCopied)
{
    static_assert(std::is_base_of_v<ICloudProtocol, NorlisCloudProtocolProxy>);
    static_assert(std::has_virtual_destructor_v<ICloudProtocol>);
    static_assert(!std::is_copy_constructible_v<NorlisCloudProtocolProxy>);
    static_assert(!std::is_base_of_v<QObject, NorlisCloudProtocolProxy>);
}

} // namespace

} // namespace Norlis::Test
