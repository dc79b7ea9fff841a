#pragma once

#include <NorlisTestKit/ServerMessages.h>

#include <QString>

#include <map>
#include <optional>
#include <utility>
#include <vector>

// The XML bodies of WebDAV (RFC 4918, 14), from a server's side.
namespace Norlis::TestKit {

/// Name of an XML element: namespace and local name.
using PropertyName = std::pair<QString, QString>;

/// What a PROPFIND asks for; empty when that is everything. Nothing when the body is not XML.
std::optional<std::vector<PropertyName>> WantedProperties(const QByteArray& body);

/// Properties that a PROPPATCH sets, with their texts, and removes, with none. Nothing when the body is not XML.
std::optional<std::map<PropertyName, std::optional<QByteArray>>> PatchedProperties(const QByteArray& body);

/// \param content XML
QByteArray Element(const PropertyName& name, const QByteArray& content);

/// Empty without properties.
/// \param properties elements
/// \param status     "200 OK"
QByteArray PropStat(const QByteArray& properties, const QByteArray& status);

ServerResponse MultiStatus(const QByteArray& responses);

} // namespace Norlis::TestKit
