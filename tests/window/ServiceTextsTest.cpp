#include "WindowTest.h"

#include <apps/window/texts/ServiceTexts.h>
#include <apps/window/texts/Texts.h>
#include <apps/window/texts/Translations.h>

#include <QApplication>
#include <QDirIterator>
#include <QRegularExpression>
#include <QSet>
#include <QTranslator>
#include <QXmlStreamReader>

namespace Norlis::Test {

namespace {

using Window::InUsersLanguage;

/// What the services and the session say, in German.
class ServiceTextsTest : public testing::Test {
protected:
    ServiceTextsTest()
    {
        Window::InstallTranslations(*qApp, QLocale(QLocale::German));
    }

    ~ServiceTextsTest() override
    {
        qDeleteAll(qApp->findChildren<QTranslator*>());
    }

    static QString Known(const QString& text)
    {
        return QCoreApplication::translate("ServiceTexts", text.toUtf8());
    }

    /// The texts in the sources of the services and the session.
    static QSet<QString> Said()
    {
        QSet<QString> texts;
        for (const auto folder : {"protocol", "host", "files"}) {
            QDirIterator sources(QString(NORLIS_PROJECT "/%1").arg(folder), {"*.cpp", "*.h"}, QDir::Files,
                                 QDirIterator::Subdirectories);
            while (sources.hasNext()) {
                texts += Literals(QString::fromUtf8(ReadFile(sources.next()).value_or("")));
            }
        }
        return texts;
    }

    /// By their form: three words and more, which are not for another program or for experts.
    static bool IsForUsers(const QString& text)
    {
        static const QRegularExpression words("^[\"%A-Za-z].* .* ");
        static const QRegularExpression others("^(PRAGMA|SELECT|INSERT|DELETE|CREATE|SQLite) "        // databases
                                               "|^(Fetching|Checking|Retriev|Files list|Cannot save)" // requests' names
                                               "|^(yes, |no \\(|another version|something else)"      // for experts
                                               "|QGuiApplication| such as |^give the address");       // programmers
        return text.contains(words) && !text.contains(others);
    }

private:
    static QSet<QString> Literals(QString source)
    {
        source.remove(QRegularExpression("(^|\\s)//[^\\n]*"));
        source.remove(QRegularExpression("'\\\\?\"'"));           // a quotation mark by itself
        source.remove(QRegularExpression("\"\\s*\\n\\s*\""));     // it goes on in the next line
        source.remove(QRegularExpression("(LOG|Note)\\([^;]*;")); // for experts
        static const QRegularExpression literal("\"((?:[^\"\\\\\\n]|\\\\.)*)\"");
        QSet<QString> texts;
        for (auto found = literal.globalMatch(source); found.hasNext();) {
            texts.insert(found.next().captured(1).replace("\\\"", "\""));
        }
        return texts;
    }
};

TEST_F(ServiceTextsTest, TheFiguresOfAnAnswerAreForExperts)
{
    Host::CloudProblem problem;
    problem.cause.reason = "The server cannot do this at that address (405)";
    EXPECT_EQ(Window::ProblemReason(problem), "Der Server kann das unter dieser Adresse nicht.");
    EXPECT_EQ(Window::TechnicalText(problem), "HTTP 405");
}

TEST_F(ServiceTextsTest, SentencesAreInTheLanguageOfTheUserWithTheirWordsAndNumbers)
{
    const std::vector<std::pair<QString, QString>> texts = {
        {"The server cannot be reached: it does not answer", "Der Server ist nicht erreichbar: er antwortet nicht"},
        {"The server has no room left (507: quota)", "Der Server hat keinen Platz mehr (507: quota)"},
        {"The folder /ä %1: (404) does not exist", "Den Ordner /ä %1: (404) gibt es nicht"},
        {"There is no folder \"\"", "Den Ordner „“ gibt es nicht"},
        {"Nothing can be written to /a: b: Disk quota exceeded",
         "In /a: b kann nichts geschrieben werden: Disk quota exceeded"},
        {"1 of 20 bytes arrived", "1 von 20 Bytes sind angekommen"},
        {"The name is longer than 255 bytes", "Der Name ist länger als 255 Bytes"},
        {"The document list \"/a. b\" could not be saved: the disk is full. Free some space and try again.",
         "Die Dokumentliste „/a. b“ konnte nicht gespeichert werden: der Datenträger ist voll. Schaffen Sie Platz und "
         "versuchen Sie es noch einmal."},
        {"Something else: (here)", "Something else: (here)"},
        {"", ""},
    };
    for (const auto& [english, german] : texts) {
        EXPECT_EQ(InUsersLanguage(english), german);
    }
}

/// It looks at the sources, so it does not see words of libraries and of the system, texts of less than three words,
/// and what becomes of texts that are put together in another way than at places, colons and statuses.
TEST_F(ServiceTextsTest, EachSentenceOfTheServicesAndTheSessionIsTranslated)
{
    int sentences = 0;
    const QSet<QString> said = Said();
    for (const QString& text : said) {
        if (!IsForUsers(text)) {
            continue;
        }
        ++sentences;
        if (Known(text) != text) {
            EXPECT_EQ(InUsersLanguage(text), Known(text));
            continue;
        }
        const QStringList parts = text.split(": ", Qt::SkipEmptyParts);
        for (const QString& part : parts) {
            EXPECT_NE(InUsersLanguage(part), part) << "in \"" << qPrintable(text) << '"';
        }
    }
    EXPECT_GT(sentences, 150);
}

/// A translation of what nobody says any more is never shown.
TEST_F(ServiceTextsTest, WhatIsTranslatedIsWhatTheServicesAndTheSessionSay)
{
    const QString said = '"' + QStringList(Said().values()).join("\"\"") + '"';
    QFile file(NORLIS_TRANSLATIONS "/norlis-documents_de.ts");
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    QXmlStreamReader reader(&file);
    bool isService = false;
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement && reader.name() == QLatin1String("name")) {
            isService = reader.readElementText() == "ServiceTexts";
        } else if (isService && reader.isStartElement() && reader.name() == QLatin1String("source")) {
            const QString text = reader.readElementText();
            EXPECT_TRUE(said.contains('"' + text) || said.contains(": " + text)) << qPrintable(text);
        }
    }
}

} // namespace

} // namespace Norlis::Test
