#include "CloudUnderTest.h"
#include "Rounds.h"

namespace Norlis::Test {

QString CloudUnderTest::Token()
{
    return "token";
}

bool CloudUnderTest::PutAsOthers(const QString& name, const QByteArray& content)
{
    Put(name, content);
    return true;
}

bool CloudUnderTest::HashesForeignDocuments() const
{
    return true;
}

bool CloudUnderTest::KeepsHashes() const
{
    return true;
}

bool CloudUnderTest::ReportsCreationTime() const
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

int CloudUnderTest::LongestName() const
{
    return 255; // numbers take the place of its end
}

bool CloudUnderTest::ListsPercentSignsAndAmpersands() const
{
    return true;
}

bool CloudUnderTest::ListsControlCharacters() const
{
    return true;
}

bool CloudUnderTest::AcceptsRepeatedRemoval() const
{
    return false;
}

bool CloudUnderTest::RestartsDownloadOnChange() const
{
    return false;
}

bool CloudUnderTest::NoticesChangesByItself() const
{
    return true;
}

bool CloudUnderTest::IsQuietAfterDestruction() const
{
    return true;
}

bool CloudUnderTest::TellsWritersApart() const
{
    return true;
}

int CloudUnderTest::ManyDocuments() const
{
    return IsThorough() ? 10'000 : 3'000;
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
