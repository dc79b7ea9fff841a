#include <protocol/http/Authentication.h>

#include <gtest/gtest.h>

namespace Norlis::Social {

namespace {

QByteArrayList OfferedBy(const QByteArrayList& challenges)
{
    HttpHead head;
    for (const QByteArray& challenge : challenges) {
        head.fields.append({"www-authenticate", challenge});
    }
    return OfferedSchemes(head);
}

TEST(AuthenticationTest, SchemesAreReadFromFieldsAndLists)
{
    EXPECT_EQ(OfferedBy({}), QByteArrayList());
    EXPECT_EQ(OfferedBy({""}), QByteArrayList());
    EXPECT_EQ(OfferedBy({"Basic realm=\"a\"", "DIGEST realm=\"a\""}), QByteArrayList({"basic", "digest"}));
    EXPECT_EQ(OfferedBy({"Digest realm=\"a\", qop=\"auth,auth-int\", nonce=\"b\", Basic realm=\"c\""}),
              QByteArrayList({"digest", "basic"}));
    EXPECT_EQ(OfferedBy({"Negotiate YWJj==, NTLM, Basic"}), QByteArrayList({"negotiate", "ntlm", "basic"}));
    EXPECT_EQ(OfferedBy({"Basic realm=\"a\", Basic realm=\"b\""}), QByteArrayList({"basic"}));
}

TEST(AuthenticationTest, WhatOnlyLooksLikeASchemeIsNone)
{
    EXPECT_EQ(OfferedBy({R"(Bearer realm="a, Basic b", scope = "c\", Digest d")"}), QByteArrayList({"bearer"}));
    EXPECT_EQ(OfferedBy({"Bearer realm=\"never closed, Basic realm=b"}), QByteArrayList({"bearer"}));
    EXPECT_EQ(OfferedBy({",, ,=, \"Basic\""}), QByteArrayList());
}

TEST(AuthenticationTest, PasswordsAndTokensGoOutAsTheServerAsks)
{
    const Credentials password = {"user", "password"};
    EXPECT_EQ(SchemeFor(password, {"basic"}), AuthScheme::Basic);
    EXPECT_EQ(SchemeFor(password, {"basic", "digest"}), AuthScheme::Digest);
    EXPECT_EQ(SchemeFor(password, {"bearer"}), AuthScheme::None);
    EXPECT_EQ(SchemeFor(password, {"negotiate"}), AuthScheme::None);
    EXPECT_EQ(SchemeFor(password, {}), AuthScheme::None);
    const Credentials token = {{}, "token"};
    EXPECT_EQ(SchemeFor(token, {"bearer", "basic"}), AuthScheme::Bearer);
    EXPECT_EQ(SchemeFor(token, {"basic"}), AuthScheme::Bearer);
    EXPECT_EQ(SchemeFor(token, {"digest"}), AuthScheme::None);
    EXPECT_EQ(SchemeFor({"user", {}}, {"basic", "digest", "bearer"}), AuthScheme::None);
}

} // namespace

} // namespace Norlis::Social
