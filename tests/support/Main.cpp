#include "RunTests.h"

#include <QGuiApplication>

// Asked by the leak sanitizer in builds that have it. The offscreen platform plugin never deletes its screen, and the
// font configuration keeps its caches; both live as long as the process.
extern "C" Q_DECL_EXPORT const char* __lsan_default_suppressions()
{
    return "leak:libqoffscreen\nleak:libfontconfig\n";
}

int main(int argc, char** argv)
{
    return Norlis::Test::RunTests<QGuiApplication>(argc, argv);
}
