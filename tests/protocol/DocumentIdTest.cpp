#include <tests/support/ServiceContractTest.h>

#include <QRegularExpression>

namespace Norlis::Test {

class DocumentIdTest : public ServiceContractTest {};
NORLIS_FOR_EVERY_CLOUD(DocumentIdTest);

TEST_P(DocumentIdTest, IdsAreShortAndOfLettersAndDigits)
{
    for (const char* name : {"a.pdf", "A.pdf", "b c.pdf", "\u00e9.pdf", "e\u0301.pdf"}) {
        cloud->Put(name, name);
        const QString id = client.Entry(name).id;
        EXPECT_TRUE(QRegularExpression("^[a-z0-9]{1,15}$").match(id).hasMatch()) << id.toStdString();
    }
}

} // namespace Norlis::Test
