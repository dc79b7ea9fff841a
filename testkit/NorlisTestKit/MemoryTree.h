#pragma once

#include <NorlisTestKit/DavXml.h>
#include <NorlisTestKit/ServerMessages.h>

#include <QDateTime>
#include <QStringList>

#include <functional>
#include <map>
#include <optional>

namespace Norlis::TestKit {

/// A document or a collection in memory.
struct MemoryNode {
    bool isCollection = false;                     ///< or a document
    QByteArray content;                            ///< of a document
    QByteArray etag;                               ///< with its quotes
    QDateTime modifiedAt;                          ///< UTC
    qint64 number = 0;                             ///< stays with the document when it is moved
    std::map<PropertyName, QByteArray> properties; ///< set by clients; text
};

/// A small WebDAV tree that behaves as RFC 4918 and RFC 9110 say, in memory: PROPFIND, PROPPATCH, OPTIONS, HEAD, GET
/// with ranges, PUT, DELETE, MKCOL, MOVE, and the preconditions of all these.
class MemoryTree {
public:
    /// Holds the root, "/", and nothing else.
    MemoryTree();

    /// Does what a request asks for.
    ServerResponse Answer(const ServerRequest& request);

    /// Paths are decoded, without a slash at the end. Null when there is nothing.
    MemoryNode* Find(const QByteArray& path);

    /// Needs no parent, unlike the request of a client.
    MemoryNode& MakeCollection(const QByteArray& path);

    /// Adds a document or replaces its content.
    MemoryNode& Put(const QByteArray& path, const QByteArray& content);

    /// With everything in it.
    void Remove(const QByteArray& path);

    /// Names of what is directly in a collection, sorted.
    QStringList NamesIn(const QByteArray& path) const;

    /// Supplies further properties, as XML; nothing for those it does not know.
    std::function<std::optional<QByteArray>(const MemoryNode&, const PropertyName&)> moreProperties;

private:
    ServerResponse PropFind(const ServerRequest& request);
    ServerResponse PropPatch(const ServerRequest& request);
    ServerResponse Fetch(const ServerRequest& request);
    ServerResponse Store(const ServerRequest& request);
    ServerResponse Delete(const ServerRequest& request);
    ServerResponse MakeCollectionFor(const ServerRequest& request);
    ServerResponse Move(const ServerRequest& request);

    bool HasParent(const QByteArray& path);
    bool MeetsConditions(const ServerRequest& request);
    QByteArray Entry(const QByteArray& path, const MemoryNode& node, const std::vector<PropertyName>& wanted) const;
    std::optional<QByteArray> Property(const MemoryNode& node, const PropertyName& name) const;
    void Touch(MemoryNode* node);

    std::map<QByteArray, MemoryNode> nodes; ///< by path
    qint64 lastNumber = 0;
};

} // namespace Norlis::TestKit
