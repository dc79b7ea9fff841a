#include <tests/support/Files.h>
#include <tests/support/PdfFiles.h>
#include <tests/support/Renderers.h>
#include <tests/support/Waiting.h>

#include <protocol/preview/RendererProcess.h>

#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Norlis::Social {

using namespace Norlis::Test;
using testing::HasSubstr;

namespace {

const auto anyFont = QStringLiteral("/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf");

constexpr int timeLimit = 200'000; // milliseconds; for a machine that does a lot else

/// A page with text in a font that the document does not bring along.
QByteArray PdfOfSystemFont()
{
    const QByteArray text = "BT /F1 40 Tf 10 50 Td (Rgfi) Tj ET";
    return "%PDF-1.4\n"
           "1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj\n"
           "2 0 obj<</Type/Pages/Kids[3 0 R]/Count 1>>endobj\n"
           "3 0 obj<</Type/Page/Parent 2 0 R/MediaBox[0 0 100 100]/Contents 4 0 R/Resources<</Font<</F1 5 0 "
           "R>>>>>>endobj\n"
           "4 0 obj<</Length " +
           QByteArray::number(text.size()) + ">>stream\n" + text +
           "\nendstream endobj\n"
           "5 0 obj<</Type/Font/Subtype/TrueType/BaseFont/DejaVu#20Sans#20Bold/Encoding/WinAnsiEncoding>>endobj\n"
           "trailer<</Root 1 0 R>>\n%%EOF\n";
}

/// A field of a file such as /proc/1/status; empty when it is missing.
QString Field(const QByteArray& text, const QString& name)
{
    const QRegularExpression pattern("^" + name + ":?\\s+(\\S+)", QRegularExpression::MultilineOption);
    return pattern.match(QString::fromUtf8(text)).captured(1);
}

} // namespace

/// What a document could do that has taken the renderer over.
class RendererSandboxTest : public testing::Test {
protected:
    /// Runs the probe and returns what it prints.
    static QStringList GetsThrough(const QStringList& words)
    {
        QProcess probe;
        probe.start(NORLIS_SANDBOX_PROBE, words);
        EXPECT_TRUE(probe.waitForFinished(timeLimit));
        EXPECT_EQ(probe.exitStatus(), QProcess::NormalExit);
        return QString::fromUtf8(probe.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
    }

    /// The renderer on a kernel without some system calls.
    QString RendererWithout(const QString& calls)
    {
        const QString path = folder.filePath("renderer");
        QByteArray script = "#!/bin/sh\nexec '" NORLIS_SANDBOX_PROBE "'";
        for (const QString& call : calls.split(' ', Qt::SkipEmptyParts)) {
            script += " --without " + call.toUtf8();
        }
        WriteFile(path, script + " '" NORLIS_RENDERER "'\n");
        EXPECT_TRUE(QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::ExeOwner));
        return path;
    }

    QImage Render(RendererProcess& renderer, const QByteArray& content, const QSize& box = {100, 100})
    {
        const QString path = folder.filePath("document.pdf");
        WriteFile(path, content);
        bool isOver = false;
        QImage picture;
        renderer.Render(path, 1, box, [&](const RenderedPage& page, const QString& why) {
            isOver = true;
            picture = page.image;
            reason = why.toStdString();
        });
        EXPECT_TRUE(WaitUntil([&] { return isOver; }));
        return picture;
    }

    QTemporaryDir folder;
    std::string reason;
};

TEST_F(RendererSandboxTest, OnlyFontsCanBeReached)
{
    const QStringList fonts("read a font");
    EXPECT_EQ(GetsThrough({}), fonts);
    EXPECT_EQ(GetsThrough({"--without", "unshare"}), fonts);
    EXPECT_EQ(GetsThrough({"--without", "landlock_create_ruleset"}), fonts);
}

TEST_F(RendererSandboxTest, NothingCanBeReachedWhereFilesCannotBeToldApart)
{
    EXPECT_EQ(GetsThrough({"--without", "unshare", "--without", "landlock_create_ruleset"}), QStringList());
}

TEST_F(RendererSandboxTest, NoDocumentIsOpenedWithoutTheFilter)
{
    EXPECT_EQ(GetsThrough({"--without", "seccomp"}), QStringList("no sandbox"));
    RendererProcess renderer(RendererWithout("seccomp"), timeLimit);
    EXPECT_TRUE(Render(renderer, PdfOfColor(Qt::red)).isNull());
    EXPECT_THAT(reason, HasSubstr("filter system calls"));
}

TEST_F(RendererSandboxTest, TimeOfTheProcessorIsLimited)
{
    QProcess probe;
    probe.start(NORLIS_SANDBOX_PROBE, {"--burn"});
    EXPECT_TRUE(probe.waitForFinished(timeLimit));
    EXPECT_EQ(probe.exitStatus(), QProcess::CrashExit);
}

TEST_F(RendererSandboxTest, TheRendererIsInsideBeforeItDrawsAnything)
{
    RendererProcess renderer(NORLIS_RENDERER, timeLimit);
    ASSERT_FALSE(Render(renderer, PdfOfColor(Qt::red)).isNull());
    const auto processes = ChildProcesses("norlis-preview-renderer");
    ASSERT_EQ(processes.size(), 1U);
    const QString place = QStringLiteral("/proc/%1/").arg(processes[0]);
    const QByteArray status = ReadFile(place + "status").value_or("");
    EXPECT_EQ(Field(status, "Seccomp"), "2");
    EXPECT_EQ(Field(status, "NoNewPrivs"), "1");
    EXPECT_EQ(Field(status, "Threads"), "1");
    for (const char* set : {"CapPrm", "CapEff", "CapInh", "CapAmb"}) {
        EXPECT_EQ(Field(status, set), "0000000000000000") << set;
    }
    const QByteArray limits = ReadFile(place + "limits").value_or("");
    EXPECT_EQ(Field(limits, "Max core file size"), "0");
    EXPECT_EQ(Field(limits, "Max file size"), "0");
    EXPECT_EQ(Field(limits, "Max cpu time"), "60");
    EXPECT_EQ(Field(limits, "Max open files"), "64");
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    EXPECT_EQ(Field(limits, "Max address space"), "2147483648");
#endif
}

TEST_F(RendererSandboxTest, TextWithoutFontsIsDrawnInThoseOfTheSystem)
{
    ASSERT_TRUE(QFile::exists(anyFont)); // that the page names
    std::vector<QImage> pictures;
    for (const char* calls : {"", "unshare", "landlock_create_ruleset", "unshare landlock_create_ruleset"}) {
        RendererProcess renderer(RendererWithout(calls), timeLimit);
        pictures.push_back(Render(renderer, PdfOfSystemFont()));
        ASSERT_FALSE(pictures.back().isNull()) << calls << ": " << reason;
    }
    EXPECT_EQ(pictures[1], pictures[0]);
    EXPECT_EQ(pictures[2], pictures[0]);
    EXPECT_NE(pictures[3], pictures[0]); // in a font that PDFium brings
}

TEST_F(RendererSandboxTest, TheLargestPictureNeedsNothingThatIsForbidden)
{
    RendererProcess renderer(NORLIS_RENDERER, timeLimit);
    EXPECT_EQ(Render(renderer, PdfOfColor(Qt::red), {4096, 4096}).height(), 4096) << reason;
}

} // namespace Norlis::Social
