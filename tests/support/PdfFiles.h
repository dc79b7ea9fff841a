#pragma once

#include <testkit/contract/PdfFiles.h>

namespace Norlis::Test {

using TestKit::PdfOfColor;
using TestKit::PdfOfColors;
using TestKit::PdfOfContent;
using TestKit::PdfOfText;
using TestKit::PdfThatTakesLong;
using TestKit::PdfWithMuchElse;
using TestKit::PdfWithoutPages;
using TestKit::PdfWithPassword;

} // namespace Norlis::Test
