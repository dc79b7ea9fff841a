#include "CloudUnderTest.h"

namespace Norlis::TestKit {

std::unique_ptr<PDF::Cloud::ICloudProtocol> CloudUnderTest::MakeProtocolOfNextRun()
{
    return MakeProtocol();
}

std::unique_ptr<PDF::Cloud::ICloudProtocol> CloudUnderTest::MakeReplacingProtocol()
{
    return MakeProtocol();
}

QString CloudUnderTest::Token()
{
    return "token";
}

void CloudUnderTest::PutLarge(const QString& name, qint64 size)
{
    Put(name, QByteArray(static_cast<int>(size), '\0'));
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

bool CloudUnderTest::HasPreviews() const
{
    return true;
}

bool CloudUnderTest::RefusesUnsafeNames() const
{
    return true;
}

bool CloudUnderTest::ListsNamesThatBeginWithADot() const
{
    return true;
}

bool CloudUnderTest::ListsControlCharacters() const
{
    return true;
}

bool CloudUnderTest::ListsPercentSignsAndAmpersands() const
{
    return true;
}

int CloudUnderTest::LongestName() const
{
    return 255; // numbers take the place of its end
}

QString CloudUnderTest::NumberedName(const QString& name, int number) const
{
    const int dot = name.lastIndexOf('.');
    const int end = dot > 0 ? dot : name.size();
    return name.left(end) + " (" + QString::number(number) + ')' + name.mid(end);
}

bool CloudUnderTest::MayListWhileUploading(const QString&) const
{
    return false;
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

bool CloudUnderTest::WorksInTheBackground() const
{
    return true;
}

bool CloudUnderTest::IsQuietAfterDestruction() const
{
    return true;
}

int CloudUnderTest::ManyDocuments() const
{
    return 3'000;
}

qint64 CloudUnderTest::LargeSize() const
{
    return 512 * 1024 * 1024;
}

QByteArray CloudUnderTest::Log() const
{
    return {};
}

} // namespace Norlis::TestKit
