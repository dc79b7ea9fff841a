#include "CloudManagerBench.h"
#include "FilesManagerBench.h"
#include <tests/support/TypeNamed.h>

#include <QCoreApplication>
#include <QSignalSpy>

namespace Norlis::Test {

namespace {

using PDF::AbstractFileManager;
using PDF::Cloud::AbstractCloudManager;

void ExpectNothingOfItsOwn(const QMetaObject& meta)
{
    EXPECT_EQ(meta.methodOffset(), meta.methodCount());
    EXPECT_EQ(meta.propertyOffset(), meta.propertyCount());
    EXPECT_EQ(meta.enumeratorOffset(), meta.enumeratorCount());
    EXPECT_EQ(meta.classInfoOffset(), meta.classInfoCount());
    EXPECT_EQ(meta.constructorCount(), 0);
}

TEST(MetaObjectTest, CloudManagerNamesItselfAndDeclaresNothing)
{
    const auto& meta = NorlisCloudManager::staticMetaObject;
    EXPECT_STREQ(meta.className(), "Norlis::PDF::Cloud::NorlisCloudManager");
    EXPECT_EQ(meta.superClass(), &AbstractCloudManager::staticMetaObject);
    EXPECT_EQ(meta.superClass()->superClass(), &QObject::staticMetaObject);
    ExpectNothingOfItsOwn(meta);
}

TEST(MetaObjectTest, FilesManagerNamesItselfAndDeclaresNothing)
{
    const auto& meta = NorlisCloudFilesManager::staticMetaObject;
    EXPECT_STREQ(meta.className(), "Norlis::PDF::Cloud::NorlisCloudFilesManager");
    EXPECT_EQ(meta.superClass(), &AbstractFileManager::staticMetaObject);
    EXPECT_EQ(meta.superClass()->superClass(), &QObject::staticMetaObject);
    ExpectNothingOfItsOwn(meta);
}

/// A program that does not declare std::string as a meta-type, as this file does not.
class UndeclaredStringTest : public FilesManagerTest {
protected:
    static_assert(!QMetaTypeId2<std::string>::Defined);
};

TEST_F(UndeclaredStringTest, ReachesSpies)
{
    QSignalSpy updated(manager.get(), qOverload<const std::string&>(&NorlisCloudFilesManager::FileUpdated));
    Add({"a"});
    manager->Update(RecordOf("a"));
    ASSERT_EQ(updated.size(), 1);
    const QVariant id = updated[0][0];
    EXPECT_EQ(id.userType(), TypeNamed("std::string"));
    EXPECT_EQ(*static_cast<const std::string*>(id.constData()), "a");
}

TEST_F(UndeclaredStringTest, ReachesQueuedSlots)
{
    std::string received;
    QObject receiver;
    QObject::connect(
        manager.get(), qOverload<const std::string&>(&NorlisCloudFilesManager::FileUpdated), &receiver,
        [&](const std::string& id) { received = id; }, Qt::QueuedConnection);
    Add({"a"});
    manager->Update(RecordOf("a"));
    QCoreApplication::processEvents();
    EXPECT_EQ(received, "a");
}

} // namespace

} // namespace Norlis::Test
