#include "SecretWatch.h"

#include <tests/support/Files.h>

#include <NorlisTestKit/FaultServer.h>

#include <QLoggingCategory>

#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <mutex>

namespace Norlis::Test {

using namespace TestKit;

namespace {

/// The characters that are the same whatever follows the text, when so many bytes precede it.
QByteArray Base64Inside(const QByteArray& text, int bytesBefore)
{
    const QByteArray encoded = (QByteArray(bytesBefore, '.') + text).toBase64(QByteArray::OmitTrailingEquals);
    const int first = (bytesBefore * 8 + 5) / 6;
    return encoded.mid(first, (bytesBefore + text.size()) * 8 / 6 - first);
}

QByteArrayList SecretForms()
{
    const QByteArray canary = FaultServer::canary;
    QByteArray escaped;
    for (const char character : canary) {
        escaped += '%' + QByteArray(1, character).toHex();
    }
    return {canary, Base64Inside(canary, 0), Base64Inside(canary, 1), Base64Inside(canary, 2), canary.toHex(), escaped};
}

std::mutex logMutex;
QByteArray log; // guarded

class SecretWatch : public testing::EmptyTestEventListener {
    void OnTestProgramStart(const testing::UnitTest&) override
    {
        QLoggingCategory::setFilterRules("norlis.*=true");
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext& context, const QString& message) {
            const std::lock_guard guard(logMutex);
            log += QByteArray(context.category) + ": " + message.toUtf8() + '\n';
        });
    }

    void OnTestStart(const testing::TestInfo&) override
    {
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
    }

    void OnTestEnd(const testing::TestInfo& test) override
    {
        const std::string output = testing::internal::GetCapturedStdout();
        const std::string errors = testing::internal::GetCapturedStderr();
        const std::lock_guard guard(logMutex);
        const QByteArray said = std::exchange(log, {});
        EXPECT_FALSE(HoldsSecret(said)) << said.constData();
        EXPECT_FALSE(HoldsSecret(QByteArray::fromStdString(output)));
        EXPECT_FALSE(HoldsSecret(QByteArray::fromStdString(errors)));
        std::cout << output << std::flush;
        std::cerr << errors;
        if (test.result()->Failed()) {
            std::cerr << said.constData();
        }
    }
};

[[maybe_unused]] const bool isWatching = [] {
    testing::UnitTest::GetInstance()->listeners().Append(new SecretWatch);
    return true;
}();

} // namespace

bool HoldsSecret(const QByteArray& text)
{
    static const QByteArrayList forms = SecretForms();
    const QByteArray lower = text.toLower();
    return std::any_of(forms.begin(), forms.end(),
                       [&](const QByteArray& form) { return text.contains(form) || lower.contains(form); });
}

QByteArray WatchedLog()
{
    const std::lock_guard guard(logMutex);
    return log;
}

void ExpectNoSecretBelow(const QString& folder)
{
    for (const QString& name : FilesBelow(folder)) {
        EXPECT_FALSE(HoldsSecret(name.toUtf8())) << name.toStdString();
        EXPECT_FALSE(HoldsSecret(ReadFile(folder + '/' + name).value_or(QByteArray()))) << name.toStdString();
    }
}

} // namespace Norlis::Test
