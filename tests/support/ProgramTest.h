#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

namespace Norlis::Test {

/// What a run of the program came to.
struct Outcome {
    int exitStatus = -1; ///< -1 when it did not end by itself
    QString output;
    QString errors;

    /// The errors, each of which takes one line.
    QStringList ErrorLines() const;

    /// The output as one JSON array.
    QJsonArray Json() const;

    /// The output as one JSON object per line.
    QList<QJsonObject> JsonLines() const;
};

/// Runs the built program as a user would, over a folder as the cloud, with a home of its own.
class ProgramTest : public testing::Test {
protected:
    ProgramTest();

    /// Runs a command in the home folder and waits for its end.
    Outcome Run(const QStringList& words);

    /// A command that goes on running; killed at the end of the test.
    std::unique_ptr<QProcess> Start(const QStringList& words);
    static Outcome WaitForEnd(QProcess& process);

    /// Makes an empty folder the cloud that the user is signed in to.
    void SignIn();

    QString Home() const;
    QString Cloud() const;
    QString Data() const;
    static QString Sample(const QString& name);

    /// Writes a file, path relative to the home folder, and returns its absolute path.
    QString MakeFile(const QString& path, const QByteArray& content = "%PDF-1.4\n");

    /// Names of the documents in the cloud's folder.
    QStringList CloudNames() const;

    QProcessEnvironment environment;

private:
    QTemporaryDir home;
};

QByteArray ContentOf(const QString& path);

} // namespace Norlis::Test
