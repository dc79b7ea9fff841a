#include <protocol/dav/ErrorBody.h>

#include <gtest/gtest.h>

namespace Norlis::Social {

TEST(ErrorBodyTest, TheServersOwnMessageComesFirst)
{
    EXPECT_EQ(MessageOf(R"(<?xml version="1.0" encoding="utf-8"?>
<d:error xmlns:d="DAV:" xmlns:s="http://sabredav.org/ns">
  <d:quota-not-exceeded/>
  <s:exception>Sabre\DAV\Exception\InsufficientStorage</s:exception>
  <s:message>Insufficient space in /Documents, 5 MB
     required</s:message>
</d:error>)"),
              "Insufficient space in /Documents, 5 MB required");
    EXPECT_EQ(MessageOf(R"(<?xml version="1.0" encoding="utf-8"?>
<D:error xmlns:D="DAV:" xmlns:m="http://apache.org/dav/xmlns" xmlns:C="http://apache.org/dav/">
<C:error/>
<m:human-readable errcode="401">
Could not open the lock database.
</m:human-readable>
</D:error>)"),
              "Could not open the lock database.");
}

TEST(ErrorBodyTest, WithoutAMessageTheConditionIsNamed)
{
    EXPECT_EQ(MessageOf(R"(<D:error xmlns:D="DAV:"><D:propfind-finite-depth/></D:error>)"), "propfind-finite-depth");
    EXPECT_EQ(
        MessageOf(R"(<error xmlns="DAV:"><x xmlns="urn:x"/><lock-token-submitted><href>/a</href></lock-token-submitted>
                           <quota-not-exceeded/></error>)"),
        "lock-token-submitted");
    EXPECT_EQ(MessageOf(R"(<d:error xmlns:d="DAV:" xmlns:s="http://sabredav.org/ns"><s:message> </s:message>
                           <d:quota-not-exceeded/></d:error>)"),
              "quota-not-exceeded");
}

TEST(ErrorBodyTest, OtherBodiesSayNothing)
{
    for (const char* body : {"", "   ", "Not found", "<html><body><h1>507</h1></body></html>", "{\"message\": \"no\"}",
                             "<error>no</error>",
                             R"(<error xmlns="urn:other"><message xmlns="http://sabredav.org/ns">no</message></error>)",
                             R"(<d:error xmlns:d="DAV:"/>)", R"(<d:multistatus xmlns:d="DAV:"/>)", "\xff\xfe\xff"}) {
        EXPECT_EQ(MessageOf(body), QString()) << body;
    }
}

TEST(ErrorBodyTest, ABodyThatIsCutOffSaysWhatCameBefore)
{
    EXPECT_EQ(MessageOf(R"(<d:error xmlns:d="DAV:"><d:quota-not-exceeded/><s:exce)"), "quota-not-exceeded");
}

TEST(ErrorBodyTest, TheMessageIsOneLineOfPrintableText)
{
    const QByteArray begin = R"(<d:error xmlns:d="DAV:" xmlns:s="http://sabredav.org/ns"><s:message>)";
    const QByteArray end = "</s:message></d:error>";
    EXPECT_EQ(MessageOf(begin +
                        "a\tb&#10;&#13;c\xc2\x9b"
                        "31m d\xe2\x80\xae"
                        "e" +
                        end),
              "a b c 31m d e");
    EXPECT_EQ(MessageOf(begin + "<b>bold</b> text" + end), "text");
}

TEST(ErrorBodyTest, TheMessageIsShortAndWhole)
{
    const QByteArray begin = R"(<d:error xmlns:d="DAV:" xmlns:s="http://sabredav.org/ns"><s:message>)";
    const QByteArray end = "</s:message></d:error>";
    EXPECT_EQ(MessageOf(begin + QByteArray(300, 'a') + end), QString(300, 'a'));
    EXPECT_EQ(MessageOf(begin + QByteArray(1000, 'a') + end), QString(300, 'a'));
    const QString cut = MessageOf(begin + "a" + QByteArray("\xf0\x9f\x93\x84").repeated(200) + end);
    EXPECT_EQ(cut.size(), 299);
    EXPECT_EQ(QString::fromUtf8(cut.toUtf8()), cut);
}

} // namespace Norlis::Social
