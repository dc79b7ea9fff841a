#include "CloudManagerBench.h"

#include <NorlisCloud/NorlisCloudFilesManager.h>

namespace Norlis::Test {

namespace {

using PDF::AbstractFileManager;
using PDF::Cloud::AbstractCloudManager;
using PDF::Cloud::NorlisCloudFilesManager;

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

} // namespace

} // namespace Norlis::Test
