#pragma once

#include <testkit/contract/Printing.h>
#include <tests/support/Files.h>
#include <tests/support/Waiting.h>

#include <QQmlApplicationEngine>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QVariantMap>

#include <gmock/gmock.h>

#include <memory>

namespace Norlis::Test {

/// A QML engine that finds the module, a folder "cloud", and folders "here" and "there" for the user's own files.
class QmlTest : public testing::Test {
protected:
    QmlTest();
    ~QmlTest() override;

    void MakeFolders();

    /// Makes an object of what follows the import of the module. The engine's warnings are failures.
    std::unique_ptr<QObject> Make(const QByteArray& qml);

    QString Local(const QString& name) const;
    QUrl LocalUrl(const QString& name) const;

    const QTemporaryDir root;
    QQmlApplicationEngine engine;
    QStringList warnings; ///< of the engine
};

} // namespace Norlis::Test
