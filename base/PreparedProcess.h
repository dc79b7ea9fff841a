#pragma once

#include <QProcess>
#include <QProcessEnvironment>

#include <functional>
#include <utility>

#include <unistd.h>

namespace Norlis {

#if QT_VERSION_MAJOR < 6

/// A process that prepares itself before it becomes the program. What it is given to do is confined to what signal
/// handlers may do, and to the new process: with Qt 6 the two share their memory at that time.
class PreparedProcess : public QProcess {
public:
    explicit PreparedProcess(std::function<void()> prepare) : prepare(std::move(prepare)) {}

    /// The program will have an empty environment.
    void ForgetEnvironment()
    {
        hasEnvironment = false;
    }

protected:
    void setupChildProcess() override
    {
        if (!hasEnvironment) {
            environ = nullptr;
        }
        prepare();
    }

private:
    const std::function<void()> prepare;
    bool hasEnvironment = true;
};

#else

class PreparedProcess : public QProcess {
public:
    explicit PreparedProcess(const std::function<void()>& prepare)
    {
        setChildProcessModifier(prepare);
    }

    void ForgetEnvironment()
    {
        setProcessEnvironment(QProcessEnvironment());
    }
};

#endif

} // namespace Norlis
