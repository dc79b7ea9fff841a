#include "EmbeddingEditor.h"

#include <QFile>
#include <QFileInfo>

#include <cstdio>
#include <utility>

namespace Norlis::Test {

Editor::Editor(const std::shared_ptr<PDF::Cloud::ICloudInfoStorage>& store, const QString& dataFolder,
               const QUrl& service)
{
    const auto fileSystem = std::make_shared<Host::LocalFileSystem>();
    documents = std::make_unique<Documents>(store, fileSystem, hashes);

    Social::OAuth2::AuthInfo authInfo;
    authInfo.serviceUrl = service;
    authInfo.cacheFolder = dataFolder + "/previews";
    authInfo.dataFolder = dataFolder;
    authInfo.onFailure = [this](const auto& failure) { reason = failure.reason; };
    const auto adapter = std::make_shared<Host::ProtocolAdapter>(authInfo, "editor");
    protocol = &adapter->Protocol();
    cloud = std::make_unique<Cloud>(adapter, hashes, fileSystem, std::make_shared<Settings>());

    connect(cloud.get(), &Cloud::AuthorizationCompleted, this, &Editor::StartRefreshing);
    connect(cloud.get(), &Cloud::AuthorizationRequired, this, &Editor::AskForPassword);
    connect(cloud.get(), &Cloud::RetrievingFilesListFinished, this, &Editor::MergeFilesList);
    connect(cloud.get(), &Cloud::UploadingFinished, this, &Editor::TakeUploaded);
    connect(cloud.get(), &Cloud::DownloadingFinished, this, &Editor::TakeDownloaded);
    connect(cloud.get(), &Cloud::DownloadingFileRequestError, this, &Editor::EndFetching);
    connect(cloud.get(), &Cloud::DownloadingCanceled, this, &Editor::EndFetching);
    connect(cloud.get(), &Cloud::RetrieveFilePreviewFinished, this, &Editor::TakePreview);
    connect(cloud.get(), &Cloud::RemoveFileFinished, documents.get(), &Documents::Remove);

    refresh.setInterval(60'000);
    connect(&refresh, &QTimer::timeout, cloud.get(), &Cloud::RetrieveFilesList);
}

void Editor::SignIn(const QString& password)
{
    isAsking = false;
    cloud->Authorization(password);
}

void Editor::StartRefreshing()
{
    cloud->RetrieveFilesList();
    refresh.start();
}

void Editor::AskForPassword()
{
    refresh.stop(); // each list would ask again
    if (!std::exchange(isAsking, true)) {
        OpenPasswordDialog(); // which calls SignIn
    }
}

void Editor::MergeFilesList(const QList<std::shared_ptr<PDF::FileInfo>>& files)
{
    QStringList gone;
    for (int row = 0; row < documents->FilesCount(); ++row) {
        gone << documents->GetDocumentId(row);
    }
    for (const auto& record : files) {
        const auto id = QString::fromStdString(record->GetId());
        gone.removeOne(id);
        if (const auto held = documents->GetFileInfo(id)) {
            record->SetPath(held->GetPath(), held->GetMd5Hash(), held->GetCloudHashBeforeChange());
            documents->Update(record);
        } else {
            documents->Add(record);
        }
    }
    for (const QString& id : qAsConst(gone)) {
        documents->Remove(documents->GetFileInfo(id));
    }
}

void Editor::Save(const QString& path)
{
    const auto id = QString::fromStdString(documents->GetIdByPath(Host::ToPath(path)));
    if (const auto held = documents->GetFileInfo(id)) {
        documents->Update(held); // hashes the file, and shows that it has changed
        cloud->Upload(held);
    } else {
        cloud->Upload(path);
    }
}

void Editor::TakeUploaded(const std::shared_ptr<PDF::FileInfo>& record)
{
    record->SetPath(record->GetPath(), record->GetMd5Hash(), record->GetMd5Hash());
    Replace(record);
    cloud->RetrieveFilePreview(record, PDF::FileInfo::PreviewSize::Medium, QSize(100, 100)); // the old one went
}

void Editor::Replace(const std::shared_ptr<PDF::FileInfo>& record)
{
    documents->Remove(record);
    documents->Add(record);
}

void Editor::ReplaceInCloud(const QString& id)
{
    const auto held = documents->GetFileInfo(id);
    protocol->acceptListedVersion(id, Host::ToText(held->GetPath()));
    cloud->Upload(held);
}

void Editor::UseCloudVersion(const QString& id)
{
    const auto held = documents->GetFileInfo(id);
    const QString path = Host::ToText(held->GetPath());
    QFile::rename(path, path + ".mine"); // until the other one is here, at least
    held->SetPath({}, {}, {});
    Replace(held);
    Fetch(id, QFileInfo(path).path());
}

void Editor::Fetch(const QString& id, const QString& folder)
{
    const auto record = documents->GetFileInfo(id); // a copy
    auto staging = std::make_unique<QTemporaryDir>(folder + "/.editor-XXXXXX");
    if (record && staging->isValid() && protocol->loggedIn() && fetching.count(id) == 0) {
        const QString path = staging->path();
        fetching[id] = {record, folder, std::move(staging)};
        cloud->Download(record, path);
    }
}

void Editor::CancelFetching(const QString& id)
{
    if (fetching.count(id) != 0) {
        cloud->CancelDownloading(fetching[id].record);
    }
}

void Editor::TakeDownloaded(const std::shared_ptr<const PDF::FileInfo>& record)
{
    const QString id = Host::IdOf(*record);
    const QString arrived = Host::ToText(PDF::FileInfo(*record).GetPath());
    const Fetching ended = std::move(fetching[id]);
    fetching.erase(id);

    const QString target = ended.folder + '/' + QFileInfo(arrived).fileName();
    const auto path = Host::ToPath(target);
    const auto held = documents->GetFileInfo(id); // null if it was removed meanwhile
    const bool hasChanges = held && HasChanges(*held);
    const bool isCopy = held && documents->GetIdByPath(path) == held->GetId();
    const bool isTaken = QFileInfo::exists(target) && (hasChanges || !isCopy);
    if (isTaken || std::rename(QFile::encodeName(arrived), QFile::encodeName(target)) != 0) {
        return; // let the user choose another folder
    }
    protocol->copyMoved(id, arrived, target);
    if (held && !hasChanges) {
        const auto hash = hashes->CalculateHash(path);
        held->SetPath(path, hash, hash);
        Replace(held);
    }
}

bool Editor::HasChanges(PDF::FileInfo& held) const
{
    const auto hash = hashes->CalculateHash(held.GetPath());
    return !hash.empty() && hash != held.GetCloudHashBeforeChange();
}

void Editor::EndFetching(const std::shared_ptr<const PDF::FileInfo>& record)
{
    fetching.erase(Host::IdOf(*record)); // and the staging folder
}

void Editor::TakePreview(const std::shared_ptr<PDF::FileInfo>& record, PDF::FileInfo::PreviewSize size)
{
    const auto held = documents->GetFileInfo(QString::fromStdString(record->GetId()));
    if (held) {
        auto previews = record->GetRedactableCloudInfo()->GetPreviewsSet();
        held->GetRedactableCloudInfo()->SetPreviewPathBySize(previews[size], size);
        documents->Update(held);
    }
}

std::shared_ptr<PDF::FileInfo> Editor::Document(const QString& name) const
{
    for (int row = 0; row < documents->FilesCount(); ++row) {
        if (documents->GetDocumentName(row) == name) {
            return documents->GetFileInfo(documents->GetDocumentId(row));
        }
    }
    return nullptr;
}

} // namespace Norlis::Test
