#pragma once

#include "Gone.h"

#include <contracts/FileInfo.h>

#include <QMap>
#include <QString>
#include <QVariant>

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace Norlis::Test {

/// What the model of the file list acts on.
class FilesListSurroundings {
public:
    using Fields = std::map<std::string, std::string>;

    virtual ~FilesListSurroundings() = default;

    virtual std::map<std::string, Fields> ReadAll() = 0;
    virtual void RemoveRecord(const std::string& id) = 0;
    virtual void SetValue(const std::string& id, const std::string& key, const std::string& value) = 0;
    virtual bool Exists(const ioPath& path) = 0;
    virtual ioPath Normalized(const ioPath& path) = 0;
    virtual std::string HashOf(const ioPath& path) = 0;
    virtual void Log(const std::string& record) = 0;
    virtual void Signal(const std::string& text) = 0;
};

/// The file list as what is promised of it, without regard to its code: a sequence of records, and the ids that the
/// next Save deletes. A slot that deletes it ends the operation by an exception.
class FilesListModel {
public:
    using FileInfo = PDF::FileInfo;
    using File = std::shared_ptr<FileInfo>;

    explicit FilesListModel(FilesListSurroundings& surroundings) : surroundings(surroundings) {}

    void Load();
    void SaveAndDelete();

    void Add(const File& file);
    void Remove(const File& file);
    void Update(const std::shared_ptr<const FileInfo>& file);

    int FilesCount() const;
    std::string GetIdByPath(const ioPath& path) const;
    File GetFileInfo(const QString& id) const;

    QString GetDocumentName(int index) const;
    QMap<QString, QVariant> GetPreviewsSet(int index) const;
    QString GetDocumentId(int index) const;
    QString GetDocumentPath(int index) const;
    QDateTime GetModifiedDateTime(int index) const;
    int GetDocumentState(int index) const;
    int GetFileSize(int index) const;

private:
    void Signal(const std::string& text);
    File First(const std::string& id) const;
    File At(int index, const std::string& question) const;
    void Merge(FileInfo& held, FileInfo& newer);

    FilesListSurroundings& surroundings;
    std::vector<File> files; ///< the last added one is the last, with the index 0
    std::set<std::string> removed;
    bool isGone = false;
};

} // namespace Norlis::Test
