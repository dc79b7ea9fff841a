#pragma once

namespace Norlis::Apps {

/// Makes true what a program takes for granted, whatever its parent process has left it with. To be called first in
/// main().
///
/// - The standard descriptors are open: one that was closed leads to /dev/null from now on, since otherwise a socket or
///   a document would get its number, and with it all that is printed.
/// - Qt is silent as long as there is no log, unless it ends the program: then all that it has said is shown.
/// - A file that grows beyond a limit is an error of writing, and no signal that ends the program.
/// - No core dump is written and no other program of the user can read the memory, which holds passwords.
/// - There are enough descriptors. If not, the program says so and ends with exit status 1, since a library would abort
///   it later.
///
/// \param program its name, for what is shown
void PrepareProgram(const char* program);

} // namespace Norlis::Apps
