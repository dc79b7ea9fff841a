#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <stdexcept>
#include <string>
#include <vector>

namespace Norlis::Test {

namespace {

const std::filesystem::path project = NORLIS_PROJECT;

std::string Read(const std::filesystem::path& path)
{
    std::ifstream file(project / path, std::ios::binary);
    if (!file) {
        throw std::runtime_error("Cannot read " + path.string());
    }
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::smatch> Matches(const std::string& text, const std::regex& pattern)
{
    return {std::sregex_iterator(text.begin(), text.end(), pattern), {}};
}

/// "const QByteArray& header, int times = 1" becomes "header, times".
std::string ParameterNames(const std::string& parameters)
{
    static const std::regex withoutDefaults(R"( = [^,]+)");
    static const std::regex lastWord(R"((?:^|, )[^,]*?(\w+)(?=,|$))");
    return std::regex_replace(std::regex_replace(parameters, withoutDefaults, ""), lastWord, ", $1").erase(0, 2);
}

} // namespace

TEST(TestKitDocumentationTest, CatalogueOfMisbehavioursIsComplete)
{
    const std::string header = Read("testkit/NorlisTestKit/Misbehaviour.h");
    std::vector<std::string> declared;
    for (const auto& match : Matches(header, std::regex(R"(\nMisbehaviour (\w+)\(([^;]*)\);)"))) {
        declared.push_back(match.str(1) + '(' + ParameterNames(match.str(2)) + ')');
    }
    const std::string page = Read("docs/testkit.md");
    const std::string catalogue = page.substr(page.find("## Misbehaving servers"));
    std::vector<std::string> shown;
    for (const auto& match : Matches(catalogue, std::regex(R"(\n\| `([^`]+)` \| \S)"))) {
        shown.push_back(match.str(1));
    }
    EXPECT_GT(declared.size(), 40U);
    EXPECT_EQ(shown, declared);
}

} // namespace Norlis::Test
