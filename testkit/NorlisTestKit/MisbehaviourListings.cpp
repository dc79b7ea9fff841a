#include "MisbehaviourTools.h"

namespace Norlis::TestKit {

namespace {

QByteArray Response(const QByteArray& href, bool isCollection)
{
    const QByteArray type = isCollection ? "<d:collection/>" : "";
    return "<d:response><d:href>" + href + "</d:href><d:propstat><d:prop><d:resourcetype>" + type +
           "</d:resourcetype><d:getcontentlength>7</d:getcontentlength><d:getetag>\"1\"</d:getetag></d:prop>"
           "<d:status>HTTP/1.1 200 OK</d:status></d:propstat></d:response>";
}

} // namespace

Misbehaviour Lists(const QByteArrayList& hrefs)
{
    QByteArray responses;
    for (int index = 0; index < hrefs.size(); ++index) {
        responses += Response(hrefs[index], index == 0);
    }
    return SendsXml("<d:multistatus xmlns:d=\"DAV:\">" + responses + "</d:multistatus>");
}

Misbehaviour ListsWithoutEnd()
{
    return {[](Wire& wire) {
        const QByteArray collection = wire.Request().target;
        ServerResponse answer = XmlResponse(207, {});
        SendInChunks(&answer);
        wire.Send(answer.Head() + Chunk(answer.body + "<d:multistatus xmlns:d=\"DAV:\">" + Response(collection, true)));
        wire.SendWithoutEnd([collection](int number) {
            return Chunk(Response(collection + QByteArray::number(number) + ".pdf", false));
        });
    }};
}

Misbehaviour SendsXml(const QByteArray& xml)
{
    return AnswersWith(XmlResponse(207, xml));
}

Misbehaviour SendsAnXmlBomb()
{
    QByteArray entities = "<!ENTITY a0 \"aaaaaaaaaa\">";
    for (int level = 1; level < 12; ++level) {
        const QByteArray one = "&a" + QByteArray::number(level - 1) + ';';
        entities += "<!ENTITY a" + QByteArray::number(level) + " \"" + one.repeated(10) + "\">";
    }
    return SendsXml(
        "<!DOCTYPE d [" + entities +
        "]><d:multistatus xmlns:d=\"DAV:\"><d:response><d:href>&a11;</d:href></d:response></d:multistatus>");
}

Misbehaviour NestsElements(int depth)
{
    return SendsXml("<d:multistatus xmlns:d=\"DAV:\">" + QByteArray("<a>").repeated(depth) +
                    QByteArray("</a>").repeated(depth) + "</d:multistatus>");
}

Misbehaviour HasInnerStatus(int status)
{
    return {[status](Wire& wire) {
        const QByteArray text = "<d:status>HTTP/1.1 " + QByteArray::number(status) + "</d:status>";
        const QByteArray inner =
            wire.Request().method == "PROPPATCH"
                ? "<d:propstat><d:prop><x:property xmlns:x=\"urn:x\"/></d:prop>" + text + "</d:propstat>"
                : text;
        wire.Send(XmlResponse(207, "<d:multistatus xmlns:d=\"DAV:\"><d:response><d:href>" +
                                       EscapedForXml(wire.Request().target) + "</d:href>" + inner +
                                       "</d:response></d:multistatus>")
                      .Bytes());
        wire.Finish();
    }};
}

Misbehaviour EchoesTheCredentials(int status)
{
    return {[status](Wire& wire) {
        const QByteArray authorization = wire.Request().headers.Value("Authorization");
        const QByteArray secret = authorization.startsWith("Basic ")
                                      ? QByteArray::fromBase64(authorization.mid(6)).split(':').value(1)
                                      : authorization.mid(authorization.indexOf(' ') + 1);
        const QByteArray all = authorization + ' ' + secret;
        ServerResponse answer =
            XmlResponse(status, SabreError("Sabre\\DAV\\Exception\\" + secret, "The password was " + all));
        answer.headers.Set("X-Debug", all);
        answer.headers.Set("ETag", '"' + secret + '"');
        answer.headers.Set("WWW-Authenticate", "Basic realm=\"" + secret + '"');
        answer.headers.Set("Location", "http://norlis:" + secret + "@127.0.0.1:1/" + secret + "?token=" + secret);
        wire.Send(answer.Bytes());
        wire.Finish();
    }};
}

} // namespace Norlis::TestKit
