#include "DesktopBus.h"

#include <apps/window/widgets/Sharpness.h>
#include <tests/support/RunTests.h>

#include <QApplication>

// See the one of the other test programs. The connection that Qt makes to the message bus lives as long as the process.
extern "C" Q_DECL_EXPORT const char* __lsan_default_suppressions()
{
    return "leak:libqoffscreen\nleak:libfontconfig\nleak:libdbus\n";
}

int main(int argc, char** argv)
{
    const Norlis::Test::DesktopBus bus;
    Norlis::Window::UseAllPixels();
    return Norlis::Test::RunTests<QApplication>(argc, argv);
}
