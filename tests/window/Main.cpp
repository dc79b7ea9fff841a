#include <Sharpness.h>
#include <tests/support/RunTests.h>

#include <QApplication>

// See the one of the other test programs.
extern "C" Q_DECL_EXPORT const char* __lsan_default_suppressions()
{
    return "leak:libqoffscreen\nleak:libfontconfig\n";
}

int main(int argc, char** argv)
{
    Norlis::Window::UseAllPixels();
    return Norlis::Test::RunTests<QApplication>(argc, argv);
}
