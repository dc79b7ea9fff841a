#include "MemoryTree.h"

#include "DavXml.h"

#include <QLocale>
#include <QRegularExpression>

#include <algorithm>

namespace Norlis::TestKit {

namespace {

const QString dav = "DAV:";

bool IsBelow(const QByteArray& path, const QByteArray& collection)
{
    return path.startsWith(collection == "/" ? collection : collection + '/') && path != collection;
}

QByteArray ParentOf(const QByteArray& path)
{
    const int slash = path.lastIndexOf('/');
    return slash <= 0 ? "/" : path.left(slash);
}

QByteArray HttpDate(const QDateTime& time)
{
    return QLocale::c().toString(time, "ddd, dd MMM yyyy hh:mm:ss 'GMT'").toLatin1();
}

ServerResponse Status(int status)
{
    return {status, {}, {}};
}

/// Whether one of the tags of an If-Match or If-None-Match is a document's.
bool Names(const QByteArray& tags, const MemoryNode* node)
{
    const QByteArrayList list = tags.split(',');
    return node != nullptr && std::any_of(list.begin(), list.end(), [node](const QByteArray& tag) {
               return tag.trimmed() == "*" || tag.trimmed() == node->etag;
           });
}

/// Reduces an answer to the part that a Range header asks for; one that it does not know changes nothing.
void ApplyRange(const QByteArray& header, ServerResponse* answer)
{
    static const QRegularExpression form("^bytes=(\\d*)-(\\d*)$");
    const auto range = form.match(header);
    if (!range.hasMatch()) {
        return;
    }
    const qint64 size = answer->body.size();
    const bool isSuffix = range.captured(1).isEmpty();
    const qint64 first =
        isSuffix ? std::max<qint64>(0, size - range.captured(2).toLongLong()) : range.captured(1).toLongLong();
    const qint64 last =
        isSuffix || range.captured(2).isEmpty() ? size - 1 : std::min(size - 1, range.captured(2).toLongLong());
    if (first > last) {
        answer->status = 416;
        answer->headers.Set("Content-Range", "bytes */" + QByteArray::number(size));
        answer->body.clear();
        return;
    }
    answer->status = 206;
    answer->headers.Set("Content-Range", "bytes " + QByteArray::number(first) + '-' + QByteArray::number(last) + '/' +
                                             QByteArray::number(size));
    answer->body = answer->body.mid(static_cast<int>(first), static_cast<int>(last - first + 1));
}

} // namespace

MemoryTree::MemoryTree()
{
    MakeCollection("/");
}

ServerResponse MemoryTree::Answer(const ServerRequest& request)
{
    using Handler = ServerResponse (MemoryTree::*)(const ServerRequest&);
    static const std::map<QByteArray, Handler> handlers = {{"PROPFIND", &MemoryTree::PropFind},
                                                           {"PROPPATCH", &MemoryTree::PropPatch},
                                                           {"GET", &MemoryTree::Fetch},
                                                           {"HEAD", &MemoryTree::Fetch},
                                                           {"PUT", &MemoryTree::Store},
                                                           {"DELETE", &MemoryTree::Delete},
                                                           {"MKCOL", &MemoryTree::MakeCollectionFor},
                                                           {"MOVE", &MemoryTree::Move}};
    if (request.method == "OPTIONS") {
        return {
            200, {{"DAV", "1"}, {"Allow", "OPTIONS, GET, HEAD, PUT, DELETE, MKCOL, MOVE, PROPFIND, PROPPATCH"}}, {}};
    }
    const auto handler = handlers.find(request.method);
    return handler == handlers.end() ? Status(405) : (this->*handler->second)(request);
}

MemoryNode* MemoryTree::Find(const QByteArray& path)
{
    const auto place = nodes.find(path);
    return place == nodes.end() ? nullptr : &place->second;
}

MemoryNode& MemoryTree::MakeCollection(const QByteArray& path)
{
    MemoryNode& node = nodes[path];
    node.isCollection = true;
    Touch(&node);
    return node;
}

MemoryNode& MemoryTree::Put(const QByteArray& path, const QByteArray& content)
{
    MemoryNode& node = nodes[path];
    node.content = content;
    Touch(&node);
    return node;
}

void MemoryTree::Touch(MemoryNode* node)
{
    ++lastNumber;
    node->number = node->number == 0 ? lastNumber : node->number;
    node->etag = "\"e" + QByteArray::number(lastNumber) + '"';
    node->modifiedAt = QDateTime::currentDateTimeUtc();
}

void MemoryTree::Remove(const QByteArray& path)
{
    nodes.erase(path);
    for (auto node = nodes.lower_bound(path); node != nodes.end();) {
        node = IsBelow(node->first, path) ? nodes.erase(node) : std::next(node);
    }
}

QStringList MemoryTree::NamesIn(const QByteArray& path) const
{
    QStringList names;
    for (const auto& [each, node] : nodes) {
        if (IsBelow(each, path) && ParentOf(each) == path) {
            names << QString::fromUtf8(each.mid(each.lastIndexOf('/') + 1));
        }
    }
    names.sort();
    return names;
}

ServerResponse MemoryTree::PropFind(const ServerRequest& request)
{
    const QByteArray path = request.Path();
    const auto wanted = WantedProperties(request.body);
    const QByteArray depth = request.headers.Value("Depth");
    if (!wanted) {
        return Status(400);
    }
    if (depth != "0" && depth != "1") {
        return Status(403);
    }
    const MemoryNode* self = Find(path);
    if (self == nullptr) {
        return Status(404);
    }
    QByteArray responses = Entry(path, *self, *wanted);
    for (const auto& [each, node] : nodes) {
        if (depth == "1" && IsBelow(each, path) && ParentOf(each) == path) {
            responses += Entry(each, node, *wanted);
        }
    }
    return MultiStatus(responses);
}

QByteArray MemoryTree::Entry(const QByteArray& path, const MemoryNode& node,
                             const std::vector<PropertyName>& wanted) const
{
    static const std::vector<PropertyName> all = {{dav, "resourcetype"},    {dav, "getcontentlength"},
                                                  {dav, "getcontenttype"},  {dav, "getetag"},
                                                  {dav, "getlastmodified"}, {dav, "creationdate"}};
    QByteArray known;
    QByteArray unknown;
    for (const PropertyName& name : wanted.empty() ? all : wanted) {
        if (const auto value = Property(node, name)) {
            known += Element(name, *value);
        } else {
            unknown += Element(name, {});
        }
    }
    const QByteArray slash = node.isCollection && path != "/" ? "/" : "";
    return "<d:response><d:href>" + EscapedForXml(EncodedPath(path)) + slash + "</d:href>" + PropStat(known, "200 OK") +
           PropStat(wanted.empty() ? QByteArray() : unknown, "404 Not Found") + "</d:response>";
}

std::optional<QByteArray> MemoryTree::Property(const MemoryNode& node, const PropertyName& name) const
{
    if (moreProperties) {
        if (const auto value = moreProperties(node, name)) {
            return value;
        }
    }
    const auto property = node.properties.find(name);
    if (property != node.properties.end()) {
        return EscapedForXml(property->second);
    }
    if (name.first != dav) {
        return {};
    }
    if (name.second == "resourcetype") {
        return node.isCollection ? "<d:collection/>" : "";
    }
    if (name.second == "getetag") {
        return EscapedForXml(node.etag);
    }
    if (name.second == "getlastmodified") {
        return HttpDate(node.modifiedAt);
    }
    if (name.second == "creationdate") {
        return node.modifiedAt.toString(Qt::ISODate).toLatin1();
    }
    if (name.second == "getcontentlength" && !node.isCollection) {
        return QByteArray::number(node.content.size());
    }
    if (name.second == "getcontenttype" && !node.isCollection) {
        return "application/pdf";
    }
    return {};
}

ServerResponse MemoryTree::PropPatch(const ServerRequest& request)
{
    MemoryNode* node = Find(request.Path());
    if (node == nullptr) {
        return Status(404);
    }
    const auto patch = PatchedProperties(request.body);
    if (!patch) {
        return Status(400);
    }
    QByteArray done;
    for (const auto& [name, text] : *patch) {
        if (text) {
            node->properties[name] = *text;
        } else {
            node->properties.erase(name);
        }
        done += Element(name, {});
    }
    return MultiStatus("<d:response><d:href>" + EscapedForXml(EncodedPath(request.Path())) + "</d:href>" +
                       PropStat(done, "200 OK") + "</d:response>");
}

ServerResponse MemoryTree::Fetch(const ServerRequest& request)
{
    const MemoryNode* node = Find(request.Path());
    if (node == nullptr || node->isCollection) {
        return Status(node == nullptr ? 404 : 405);
    }
    ServerResponse answer;
    answer.omitsBody = request.method == "HEAD";
    answer.headers = {{"ETag", node->etag},
                      {"Last-Modified", HttpDate(node->modifiedAt)},
                      {"Content-Type", "application/pdf"},
                      {"Accept-Ranges", "bytes"}};
    answer.body = node->content;
    if (!MeetsConditions(request)) {
        answer.status = request.headers.Has("If-None-Match") ? 304 : 412;
        answer.body.clear();
        return answer;
    }
    const QByteArray ifRange = request.headers.Value("If-Range");
    if (ifRange.isEmpty() || ifRange == node->etag) {
        ApplyRange(request.headers.Value("Range"), &answer);
    }
    return answer;
}

ServerResponse MemoryTree::Store(const ServerRequest& request)
{
    const QByteArray path = request.Path();
    const MemoryNode* existing = Find(path);
    if (!HasParent(path) || (existing != nullptr && existing->isCollection)) {
        return Status(409);
    }
    if (!MeetsConditions(request)) {
        return Status(412);
    }
    if (request.headers.Has("Content-Range")) {
        return Status(400);
    }
    const bool isNew = existing == nullptr;
    const MemoryNode& node = Put(path, request.body);
    return {isNew ? 201 : 204, {{"ETag", node.etag}}, {}};
}

ServerResponse MemoryTree::Delete(const ServerRequest& request)
{
    if (Find(request.Path()) == nullptr) {
        return Status(404);
    }
    if (!MeetsConditions(request)) {
        return Status(412);
    }
    Remove(request.Path());
    return Status(204);
}

ServerResponse MemoryTree::MakeCollectionFor(const ServerRequest& request)
{
    const QByteArray path = request.Path();
    if (Find(path) != nullptr || !HasParent(path)) {
        return Status(Find(path) != nullptr ? 405 : 409);
    }
    MakeCollection(path);
    return Status(201);
}

ServerResponse MemoryTree::Move(const ServerRequest& request)
{
    const QByteArray from = request.Path();
    const QByteArray to = DecodedPath(request.headers.Value("Destination"));
    const MemoryNode* source = Find(from);
    const MemoryNode* target = Find(to);
    if (source == nullptr || source->isCollection || !request.headers.Has("Destination")) {
        return Status(source == nullptr ? 404 : 400);
    }
    if (!HasParent(to) || from == to) {
        return Status(from == to ? 403 : 409);
    }
    if (!MeetsConditions(request) || (target != nullptr && request.headers.Value("Overwrite") == "F")) {
        return Status(412);
    }
    const bool isNew = target == nullptr;
    MemoryNode moved = *source;
    nodes.erase(from);
    Remove(to);
    nodes[to] = std::move(moved);
    return Status(isNew ? 201 : 204);
}

bool MemoryTree::HasParent(const QByteArray& path)
{
    const MemoryNode* parent = Find(ParentOf(path));
    return parent != nullptr && parent->isCollection;
}

bool MemoryTree::MeetsConditions(const ServerRequest& request)
{
    const MemoryNode* node = Find(request.Path());
    const QByteArray match = request.headers.Value("If-Match");
    const QByteArray noneMatch = request.headers.Value("If-None-Match");
    if ((!match.isEmpty() && !Names(match, node)) || (!noneMatch.isEmpty() && Names(noneMatch, node))) {
        return false;
    }
    // <address> (["tag"]), as a condition on another document than the request's.
    static const QRegularExpression tagged("<([^>]*)>\\s*\\(\\s*\\[([^\\]]*)\\]\\s*\\)");
    auto conditions = tagged.globalMatch(request.headers.Value("If"));
    while (conditions.hasNext()) {
        const auto condition = conditions.next();
        if (!Names(condition.captured(2).toUtf8(), Find(DecodedPath(condition.captured(1).toUtf8())))) {
            return false;
        }
    }
    return true;
}

} // namespace Norlis::TestKit
