#pragma once

#include <QString>

namespace Norlis::Describe {

// What a shell completes after norlis-cloud: commands, their options, files, and names of documents from the list as it
// was last fetched.

QString BashCompletion();
QString ZshCompletion();
QString FishCompletion();

} // namespace Norlis::Describe
