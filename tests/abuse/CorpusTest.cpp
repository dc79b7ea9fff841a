// What a fuzzer begins with, and what one has found: each is a test, of the same promises.

#include <QDir>

#include <gtest/gtest.h>

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

std::vector<std::string> InputNames()
{
    std::vector<std::string> names;
    for (const QString& name : QDir(NORLIS_CORPUS).entryList(QDir::Files, QDir::Name)) {
        names.push_back(name.toStdString());
    }
    return names;
}

class CorpusTest : public testing::TestWithParam<std::string> {};

INSTANTIATE_TEST_SUITE_P(Inputs, CorpusTest, testing::ValuesIn(InputNames()), [](const auto& info) {
    std::string name = info.param;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

TEST_P(CorpusTest, BreaksNoPromise)
{
    QFile file(QDir(NORLIS_CORPUS).filePath(QString::fromStdString(GetParam())));
    ASSERT_TRUE(file.open(QFile::ReadOnly));
    const QByteArray content = file.readAll();
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(content.constData()), static_cast<size_t>(content.size()));
}

} // namespace
