#include <apps/terminal/TokenInput.h>

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

#include <pty.h>
#include <termios.h>
#include <unistd.h>

namespace Norlis::Test {

namespace {

using Terminal::TokenFromFile;
using Terminal::TokenFromStandardInput;

/// Puts another file in the place of a standard one for as long as it lives.
class Redirection {
public:
    Redirection(int standard, int descriptor) : standard(standard), before(dup(standard))
    {
        dup2(descriptor, standard);
    }

    ~Redirection()
    {
        dup2(before, standard);
        close(before);
    }

    Redirection(const Redirection&) = delete;
    Redirection& operator=(const Redirection&) = delete;

private:
    int standard;
    int before;
};

class TokenInputTest : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_EQ(pipe(interrupt), 0);
    }

    ~TokenInputTest() override
    {
        close(interrupt[0]);
        close(interrupt[1]);
    }

    QString FileWith(const QByteArray& content)
    {
        QFile file(folder.filePath("token"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return file.fileName();
    }

    /// The token when standard input has this content.
    std::optional<QString> FromInput(const QByteArray& content)
    {
        QFile file(FileWith(content));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        const Redirection input(STDIN_FILENO, file.handle());
        return TokenFromStandardInput("Token: ", interrupt[0]);
    }

    int interrupt[2] = {-1, -1};
    QTemporaryDir folder;
};

TEST_F(TokenInputTest, LineEndIsNoPartOfTheToken)
{
    EXPECT_EQ(TokenFromFile(FileWith("abc\n")), "abc");
    EXPECT_EQ(TokenFromFile(FileWith("abc\r\n")), "abc");
    EXPECT_EQ(TokenFromFile(FileWith(" a b ")), " a b ");
    EXPECT_EQ(FromInput("abc\n"), QString("abc"));
    EXPECT_EQ(FromInput("abc"), QString("abc"));
}

TEST_F(TokenInputTest, EmptyTokenIsRefused)
{
    EXPECT_THROW(TokenFromFile(FileWith("\n")), std::runtime_error);
    EXPECT_THROW(FromInput(""), std::runtime_error);
}

TEST_F(TokenInputTest, OversizedTokenIsRefused)
{
    EXPECT_THROW(TokenFromFile(FileWith(QByteArray(100'000, 'x'))), std::runtime_error);
    EXPECT_THROW(FromInput(QByteArray(100'000, 'x')), std::runtime_error);
}

TEST_F(TokenInputTest, SeveralLinesAndControlCharactersAreRefused)
{
    for (const QByteArray content : {"abc\ndef\n", "abc\r\nX: y", "\x1b[A", "a\tb"}) {
        EXPECT_THROW(TokenFromFile(FileWith(content)), std::runtime_error) << content.toStdString();
        EXPECT_THROW(FromInput(content), std::runtime_error) << content.toStdString();
    }
}

TEST_F(TokenInputTest, MissingFileIsNamed)
{
    try {
        TokenFromFile(folder.filePath("nowhere"));
        FAIL() << "no exception";
    } catch (const std::runtime_error& problem) {
        EXPECT_NE(std::string(problem.what()).find("nowhere"), std::string::npos);
    }
}

/// A user in front of a terminal, whose question and keys go through it.
class TokenOnTerminalTest : public TokenInputTest {
protected:
    void SetUp() override
    {
        TokenInputTest::SetUp();
        ASSERT_EQ(openpty(&user, &program, nullptr, nullptr, nullptr), 0);
    }

    ~TokenOnTerminalTest() override
    {
        close(user);
        close(program);
    }

    QByteArray ReadAsUser()
    {
        char piece[4096];
        const ssize_t count = read(user, piece, sizeof piece);
        return QByteArray(piece, static_cast<int>(count));
    }

    bool IsEchoing() const
    {
        termios settings = {};
        tcgetattr(program, &settings);
        return (settings.c_lflag & ECHO) != 0;
    }

    int user = -1;
    int program = -1;
};

TEST_F(TokenOnTerminalTest, WhatIsTypedIsNotShown)
{
    QByteArray seen;
    std::thread typist([&] {
        seen = ReadAsUser(); // the question
        [[maybe_unused]] const auto count = write(user, "secret\n", 7);
    });
    std::optional<QString> token;
    {
        const Redirection input(STDIN_FILENO, program);
        const Redirection errors(STDERR_FILENO, program);
        token = TokenFromStandardInput("Token: ", interrupt[0]);
    }
    typist.join();
    EXPECT_EQ(token, QString("secret"));
    [[maybe_unused]] const auto count = write(program, "end", 3);
    while (!seen.endsWith("end")) {
        seen += ReadAsUser();
    }
    EXPECT_TRUE(seen.startsWith("Token: ")) << seen.toStdString();
    EXPECT_FALSE(seen.contains("secret"));
    EXPECT_TRUE(IsEchoing()) << "afterwards everything is as before";
}

TEST_F(TokenOnTerminalTest, InterruptEndsTheQuestion)
{
    [[maybe_unused]] const auto count = write(interrupt[1], "x", 1);
    const Redirection input(STDIN_FILENO, program);
    EXPECT_EQ(TokenFromStandardInput({}, interrupt[0]), std::nullopt);
    EXPECT_TRUE(IsEchoing());
}

} // namespace

} // namespace Norlis::Test
