// A host's upload view over a cloud that answers when the test says so: late, with a failure, or when it is too late.

#include <NorlisCloud/NorlisCloudManager.h>
#include <NorlisTestKit/CountingHashCalculator.h>
#include <NorlisTestKit/FakeFileSystem.h>
#include <NorlisTestKit/FixedAccountSettings.h>
#include <NorlisTestKit/ScriptedProtocol.h>

#include <QTest>

using namespace Norlis;
using Cloud = PDF::Cloud::NorlisCloudManager;

struct UploadView : QObject { // the host's: what it says of an upload
    explicit UploadView(Cloud& cloud)
    {
        connect(&cloud, &Cloud::UploadingStarted, this, [this] { text = "Waiting"; });
        connect(&cloud, &Cloud::UploadingProgressValueChanged, this,
                [this](const QString&, int percent) { text = QString("%1 %").arg(percent); });
        connect(&cloud, &Cloud::UploadingFinished, this, [this] { text = "Stored"; });
        connect(&cloud, &Cloud::UploadingFileRequestError, this, [this] { text = "Failed. Try again?"; });
        connect(&cloud, &Cloud::UploadingCanceled, this, [this] { text = "Cancelled"; });
    }
    QString text;
};

class UploadViewTest : public QObject {
    Q_OBJECT
    std::shared_ptr<TestKit::ScriptedProtocol> protocol = std::make_shared<TestKit::ScriptedProtocol>();
    Cloud cloud{protocol, std::make_shared<TestKit::CountingHashCalculator>(),
                std::make_shared<TestKit::FakeFileSystem>(), std::make_shared<TestKit::FixedAccountSettings>()};
    UploadView view{cloud};
private slots:
    void ShowsHowFarItIs()
    {
        cloud.Upload(QString("/home/me/report.pdf"));
        QCOMPARE(view.text, QString("Waiting"));
        protocol->Progress(protocol->LastId("uploadFile"), 50);
        QCOMPARE(view.text, QString("50 %"));
        protocol->Answer(protocol->LastId("uploadFile"), Social::Success);
        QCOMPARE(view.text, QString("Stored"));
    }
    void OffersToTryAgain()
    {
        cloud.Upload(QString("/home/me/report.pdf"));
        protocol->Answer(protocol->LastId("uploadFile"), Social::Error);
        QCOMPARE(view.text, QString("Failed. Try again?"));
    }
    void StaysCancelled()
    {
        cloud.Upload(QString("/home/me/report.pdf"));
        cloud.CancelUploading("/home/me/report.pdf");
        protocol->Answer(protocol->LastId("uploadFile"), Social::Success); // which was on its way
        QCOMPARE(view.text, QString("Cancelled"));
    }
};

QTEST_GUILESS_MAIN(UploadViewTest)
#include "UploadViewTest.moc"
