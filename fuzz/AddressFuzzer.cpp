// Feeds what reads addresses, whether a user types them or a server sends them, with all kinds of texts.

#include "Require.h"

#include <host/account/ServiceAddress.h>
#include <protocol/dav/Collection.h>
#include <protocol/http/Origin.h>

#include <stdexcept>

namespace {

using namespace Norlis;
using Fuzz::Require;
using Social::DavPath;

const QByteArray member = "a b%2F?#\xff.pdf";

/// What keeps a path below the place that it begins at, and what is sent meaning what was read.
void CheckPath(const DavPath& path)
{
    for (const QByteArray& segment : path) {
        Require(!segment.isEmpty() && segment != "." && segment != "..");
        Require(!segment.contains('/') && !segment.contains('\0'));
    }
    Require(Social::SegmentsOfHref(Social::EncodePath(path, false)) == path);
    Require(Social::SegmentsOfUrl(Social::EncodePath(path, true)) == path);
}

void CheckOrigin(const QByteArray& origin)
{
    Require(origin == origin.toLower() && !origin.contains('@') && origin.count('/') == (origin.isEmpty() ? 0 : 2));
}

void CheckCollection(const QUrl& service)
{
    if (!Social::SegmentsOfUrl(service.toEncoded(QUrl::RemoveUserInfo))) {
        return; // refused at sign-in
    }
    const Social::Collection collection(service);
    CheckPath(collection.Path());
    CheckOrigin(collection.Origin());
    Require(collection.Origin() == Social::OriginOfUrl(collection.Origin()));
    Require(collection.Url().endsWith('/') && collection.Url().startsWith(collection.InstanceUrl()));

    const QByteArray url = collection.UrlOf(member);
    const auto path = Social::SegmentsOfUrl(url);
    Require(path && Social::OriginOfUrl(url) == collection.Origin());
    Require(Social::MemberName(collection.Path(), *path) == member);
}

void CheckService(const QString& text)
{
    QUrl service;
    try {
        service = Host::ServiceAddress(text);
    } catch (const std::invalid_argument&) {
        return;
    }
    Require(service.isValid() && !service.hasQuery() && !service.hasFragment());
    if (!Host::IsFolder(service)) {
        Require(Host::ServiceAddress(service.toString(QUrl::FullyEncoded)) == service);
        Require(!service.host().isEmpty() && service.password().isEmpty());
        Require(service.path(QUrl::FullyEncoded).endsWith('/'));
        CheckCollection(service);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray text(reinterpret_cast<const char*>(data), static_cast<int>(size));
    CheckOrigin(Social::OriginOfUrl(text));
    for (const auto& path : {Social::SegmentsOfHref(text), Social::SegmentsOfUrl(text)}) {
        if (path) {
            CheckPath(*path);
        }
    }
    CheckService(QString::fromUtf8(text));
    return 0;
}
