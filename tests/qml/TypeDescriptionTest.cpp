#include "QmlTest.h"

#include <QMetaProperty>

namespace Norlis::Test {

namespace {

using TypeDescriptionTest = QmlTest;

// Tools for QML complete and check what is written by plugins.qmltypes.
TEST_F(TypeDescriptionTest, HasEveryPropertyFunctionAndSignalOfTheElement)
{
    const auto description = ReadFile(NORLIS_QML_MODULES "/Norlis/Cloud/plugins.qmltypes").value_or("");
    const auto cloud = Make("CloudDocuments {}");
    const auto& type = *cloud->metaObject();
    for (int index = type.propertyOffset(); index < type.propertyCount(); ++index) {
        const QByteArray property = type.property(index).name();
        EXPECT_THAT(description.toStdString(),
                    testing::HasSubstr(("Property { name: \"" + property + '"').toStdString()));
    }
    for (int index = type.methodOffset(); index < type.methodCount(); ++index) {
        const auto method = type.method(index);
        const QByteArray name = method.name();
        if (!name.endsWith("Changed")) { // comes with its property
            std::string expected = "name: \"" + name.toStdString() + '"';
            const auto parameters = method.parameterNames();
            for (const auto& parameter : parameters) {
                expected += ".*\n *Parameter \\{ name: \"" + parameter.toStdString() + "\".*";
            }
            EXPECT_THAT(description.toStdString(), testing::ContainsRegex(expected));
        }
    }
}

} // namespace

} // namespace Norlis::Test
