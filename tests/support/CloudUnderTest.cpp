#include "CloudUnderTest.h"

namespace Norlis::Test {

QString CloudUnderTest::Token()
{
    return "token";
}

bool CloudUnderTest::HashesForeignDocuments() const
{
    return true;
}

bool CloudUnderTest::KeepsHashes() const
{
    return true;
}

bool CloudUnderTest::TellsCreation() const
{
    return true;
}

CloudUnderTest::QuotaOf CloudUnderTest::CountsInQuota() const
{
    return QuotaOf::Documents;
}

bool CloudUnderTest::ListsNamesThatBeginWithADot() const
{
    return true;
}

bool CloudUnderTest::ListsControlCharacters() const
{
    return true;
}

bool CloudUnderTest::TakesRemovalTwice() const
{
    return false;
}

bool CloudUnderTest::FetchesChangedDocumentsAnew() const
{
    return false;
}

bool CloudUnderTest::SeesChangesByItself() const
{
    return true;
}

bool CloudUnderTest::IsQuietAfterDestruction() const
{
    return true;
}

int CloudUnderTest::ManyDocuments() const
{
    return 10'000;
}

qint64 CloudUnderTest::LargeSize() const
{
    return 512 * 1024 * 1024;
}

QByteArray CloudUnderTest::Log() const
{
    return {};
}

} // namespace Norlis::Test
