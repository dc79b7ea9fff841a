// Has the list of documents restore itself from records that it has not written. A record begins with a line that has
// its id in brackets, each line after it is a field: key=value. Files below /here exist.

#include "Require.h"

#include <base/Utf8.h>
#include <NorlisCloud/NorlisCloudFilesManager.h>

#include <set>
#include <stdexcept>

namespace {

using namespace Norlis;
using Fuzz::Require;
using Fields = std::map<std::string, std::string>;
using Records = std::map<std::string, Fields>;

// The test kit's collaborators write down whatever they are asked, which would take most of the time here.

class Store : public PDF::Cloud::ICloudInfoStorage {
public:
    Records records;

    void RemoveRecord(const std::string& fileId) override
    {
        records.erase(fileId);
    }

    void SetValue(const std::string& fileId, const std::string& key, const std::string& value) override
    {
        records[fileId][key] = value;
    }

    Records ReadAll() override
    {
        return records;
    }
};

class Files : public PDF::IFileSystem {
public:
    bool Exists(const ioPath& path) override
    {
        return path.utf8string().rfind("/here/", 0) == 0;
    }

    ioPath NormalizePath(const ioPath& path) override
    {
        return path;
    }
};

class Hashes : public PDF::IHashCalculator {
public:
    std::string CalculateHash(const ioPath& path) override
    {
        return "hash of " + path.utf8string();
    }
};

Records Read(const QByteArray& text)
{
    Records records;
    Fields* fields = &records[""];
    const auto lines = text.split('\n');
    for (const QByteArray& line : lines) {
        if (line.startsWith('[') && line.endsWith(']')) {
            fields = &records[line.mid(1, line.size() - 2).toStdString()];
        } else if (const int end = line.indexOf('='); end >= 0) {
            (*fields)[line.left(end).toStdString()] = line.mid(end + 1).toStdString();
        }
    }
    return records;
}

/// The numbers of a record are the only thing that a list may refuse.
void CheckRefusal(const std::exception& error)
{
    static const std::set<std::string> texts = {"invalid stoul argument", "invalid stoi argument",
                                                "stoul argument out of range", "stoi argument out of range"};
    Require(texts.count(error.what()) == 1);
}

void CheckList(const PDF::AbstractFileManager& list, const Records& records)
{
    Require(list.FilesCount() == static_cast<int>(records.size()));
    auto next = records.rbegin(); // each is put before the last one
    for (int index = 0; index < list.FilesCount(); ++index, ++next) {
        const QString id = list.GetDocumentId(index);
        const auto name = next->second.find("file_name");
        Require(id == QString::fromStdString(next->first));
        Require(list.GetDocumentName(index) == (name == next->second.end() ? QString() : FromUtf8(name->second)));
        Require(list.GetDocumentState(index) != 4 && list.GetDocumentState(index) != 5);
        Require(list.GetPreviewsSet(index).size() <= 3);
        list.GetDocumentPath(index);
        list.GetModifiedDateTime(index);
        list.GetFileSize(index);
        if (id.toStdString() == next->first) { // which it is not when it is not UTF-8
            Require(list.GetFileInfo(id) != nullptr);
        }
    }
}

/// Restores the list and has it save what it knows. False when it refuses the records.
bool LoadAndSave(const std::shared_ptr<Store>& store)
{
    try {
        const PDF::Cloud::NorlisCloudFilesManager list(store, std::make_shared<Files>(), std::make_shared<Hashes>());
        CheckList(list, store->records);
        return true;
    } catch (const std::invalid_argument& error) {
        CheckRefusal(error);
    } catch (const std::out_of_range& error) {
        CheckRefusal(error);
    }
    return false;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const auto store = std::make_shared<Store>();
    store->records = Read(QByteArray(reinterpret_cast<const char*>(data), static_cast<int>(size)));
    const Records given = store->records;
    if (!LoadAndSave(store)) {
        Require(store->records == given);
        return 0;
    }
    // What the list wrote itself it takes again, and finds nothing new to say about it; but for the pictures, which it
    // writes with a separator too many and takes for none then.
    Records written = store->records;
    Require(LoadAndSave(store));
    for (auto& [id, fields] : written) {
        fields["preview_path"] = store->records[id]["preview_path"];
    }
    Require(store->records == written);
    return 0;
}
