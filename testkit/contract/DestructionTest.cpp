#include "ContractTest.h"

#include <QPixmap>

namespace Norlis::TestKit {

/// The end of a protocol inside what it calls.
class DestructionTest : public SignedInContractTest {};
NORLIS_FOR_EVERY_CLOUD(DestructionTest);

TEST_P(DestructionTest, TheObjectMayBeDestroyedInsideACompletionCallback)
{
    const auto answer = client.UserName();
    const auto other = client.UserProfile();
    answer->onDone = [this] { client.Destroy(); };
    ASSERT_TRUE(WaitUntil([&] { return client.Protocol() == nullptr; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(answer->count, 1);
    EXPECT_EQ(other->count, 0);
}

TEST_P(DestructionTest, TheObjectMayBeDestroyedInsideTheCallbackOfAPicture)
{
    const auto answer = client.UserPic();
    answer->onDone = [this] { client.Destroy(); };
    ASSERT_TRUE(WaitUntil([&] { return client.Protocol() == nullptr; }));
    EXPECT_EQ(answer->count, 1);
}

TEST_P(DestructionTest, TheObjectMayBeDestroyedInsideAProgressCallback)
{
    WriteSparseFile(Local("large.pdf"), Large(64 * 1024 * 1024));
    const auto answer = client.Upload(Local("large.pdf"));
    answer->onProgress = [this](int) { client.Destroy(); };
    ASSERT_TRUE(WaitUntil([&] { return client.Protocol() == nullptr; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(answer->count, 0);
    EXPECT_EQ(answer->percents.size(), 1U);
    ExpectNothingIsLeft();
}

} // namespace Norlis::TestKit
