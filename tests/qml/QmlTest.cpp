#include "QmlTest.h"

#include <QFile>
#include <QQmlComponent>
#include <QUrl>

namespace Norlis::Test {

QmlTest::QmlTest()
{
    MakeFolders();
    qputenv("XDG_DATA_HOME", QFile::encodeName(Local("home")));
    engine.addImportPath(NORLIS_QML_MODULES);
    QObject::connect(&engine, &QQmlEngine::warnings, &engine, [this](const QList<QQmlError>& errors) {
        for (const auto& error : errors) {
            warnings << error.toString();
        }
    });
}

QmlTest::~QmlTest()
{
    EXPECT_EQ(warnings, QStringList());
}

void QmlTest::MakeFolders()
{
    for (const auto& folder : {"cloud", "here", "there"}) {
        MakeFolder(Local(folder));
    }
}

std::unique_ptr<QObject> QmlTest::Make(const QByteArray& qml)
{
    QQmlComponent component(&engine);
    component.setData("import Norlis.Cloud 1.0\nimport QtQuick 2.15\n" + qml, QUrl());
    std::unique_ptr<QObject> made(component.create());
    EXPECT_TRUE(made) << qPrintable(component.errorString());
    return made;
}

QString QmlTest::Local(const QString& name) const
{
    return root.filePath(name);
}

QUrl QmlTest::LocalUrl(const QString& name) const
{
    return QUrl::fromLocalFile(Local(name));
}

} // namespace Norlis::Test
