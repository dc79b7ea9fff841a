#pragma once

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <vector>

namespace Norlis::Test {

/// Makes programs that stand in for the preview renderer.
class FakeRenderers {
public:
    /// The path of a program that behaves as FakeRenderer.cpp says.
    QString Make(const QString& behaviour) const;

    /// What the programs were asked for, as "191x191 name.pdf", or "191x191 name.pdf page 2".
    QStringList Requests() const;

private:
    QTemporaryDir folder;
};

/// Numbers of the processes of a name, cut to 15 characters as the system does, that this process has started and that
/// still run.
std::vector<int> ChildProcesses(const QString& name);

} // namespace Norlis::Test
