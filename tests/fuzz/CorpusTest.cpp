// What a fuzzer begins with, and what one has found: each is a test, of the same promises.

#include <QDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>

using FuzzerFunction = int(const uint8_t* data, size_t size);
extern "C" FuzzerFunction AddressFuzzer;
extern "C" FuzzerFunction NamesFuzzer;
extern "C" FuzzerFunction RecordsFuzzer;

namespace {

struct Input {
    FuzzerFunction* fuzzer;
    QString path;
};

std::vector<Input> Inputs(const QString& folder, FuzzerFunction* fuzzer)
{
    const QDir corpus(QString(NORLIS_CORPUS "/") + folder);
    std::vector<Input> inputs;
    for (const QString& name : corpus.entryList(QDir::Files, QDir::Name)) {
        inputs.push_back({fuzzer, corpus.filePath(name)});
    }
    return inputs;
}

class CorpusTest : public testing::TestWithParam<Input> {};

const auto nameOfInput = [](const auto& info) {
    std::string name = QFileInfo(info.param.path).fileName().toStdString();
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
};
INSTANTIATE_TEST_SUITE_P(Addresses, CorpusTest, testing::ValuesIn(Inputs("addresses", AddressFuzzer)), nameOfInput);
INSTANTIATE_TEST_SUITE_P(Names, CorpusTest, testing::ValuesIn(Inputs("names", NamesFuzzer)), nameOfInput);
INSTANTIATE_TEST_SUITE_P(Records, CorpusTest, testing::ValuesIn(Inputs("records", RecordsFuzzer)), nameOfInput);

TEST_P(CorpusTest, BreaksNoPromise)
{
    QFile file(GetParam().path);
    ASSERT_TRUE(file.open(QFile::ReadOnly));
    const QByteArray content = file.readAll();
    GetParam().fuzzer(reinterpret_cast<const uint8_t*>(content.constData()), static_cast<size_t>(content.size()));
}

} // namespace
