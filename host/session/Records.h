#pragma once

#include <contracts/FileInfo.h>
#include <host/Export.h>

#include <QString>

namespace Norlis::Host {

// Of a document's record, whose own getters are not const.

/// The id of the document in the cloud.
NORLIS_HOST_EXPORT QString IdOf(const PDF::FileInfo& record);

/// The name of the cloud copy.
NORLIS_HOST_EXPORT QString NameOf(const PDF::FileInfo& record);

/// Where a service does not know the MD5 of a document, a text that stands for its version is in its place.
NORLIS_HOST_EXPORT bool IsMd5(const std::string& cloudHash);

/// Replaces the hash of the cloud copy and nothing else.
NORLIS_HOST_EXPORT void SetCloudHash(PDF::FileInfo& record, const std::string& cloudHash);

// Between the paths of records and those of Qt.

/// \param text a path as Qt has it
NORLIS_HOST_EXPORT ioPath ToPath(const QString& text);

/// The path as Qt has it.
NORLIS_HOST_EXPORT QString ToText(const ioPath& path);

} // namespace Norlis::Host
