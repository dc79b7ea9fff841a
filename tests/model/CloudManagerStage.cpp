#include "CloudManagerStage.h"

#include "RecordText.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace Norlis::Test {

CloudManagerStage::CloudManagerStage(const QString& folder) : folder(folder)
{
    for (const QString& name : QDir(folder).entryList(QDir::Files | QDir::Hidden)) {
        QFile::remove(folder + '/' + name);
    }
    for (const char* name : {"/a.pdf", "/b \u00fc.pdf", "/missing.pdf"}) {
        paths << folder + QString::fromUtf8(name);
    }
    paths << QString();
    Write(paths[0]);
    Write(folder + "/name0.pdf"); // in the place that the first record is fetched to
    for (int number = 0; number < recordCount; ++number) {
        records << MakeRecord(number);
    }
}

std::string CloudManagerStage::HashOf(const ioPath& file)
{
    journal->Write("-> CalculateHash " + file.utf8string());
    if (std::exchange(hashingThrows, false)) {
        throw std::runtime_error("no hash");
    }
    return "hash of " + file.utf8string();
}

ioPath CloudManagerStage::Normalized(const ioPath& file)
{
    journal->Write("-> NormalizePath " + file.utf8string());
    if (std::exchange(normalizingThrows, false)) {
        throw std::runtime_error("no normal form");
    }
    return QDir::cleanPath(QString::fromStdString(file.utf8string())).toStdString();
}

void CloudManagerStage::WriteRecord(const File& record)
{
    const int number = records.indexOf(record);
    journal->Write("    record " + (number < 0 ? std::string("of its own") : std::to_string(number)) + ": " +
                   TextOf(record));
}

CloudManagerStage::File CloudManagerStage::MakeRecord(int number) const
{
    if (number % recordCount == nullRecord) {
        return nullptr;
    }
    if (number % recordCount == nullRecord - 1) {
        return std::make_shared<FileInfo>(ioPath(paths[1].toStdString()), "a hash");
    }
    const std::string id = DocumentId(number == 1 ? 0 : number);
    const auto record = std::make_shared<FileInfo>(FileInfo::CloudInfo(
        id, number == 3 ? "" : "name" + std::to_string(number) + ".pdf", 1000 * quint64(number), number % 2 == 0,
        QUrl("https://cloud.example/"), QDateTime(), QDateTime(), 5, "cloud hash"));
    if (number == 2) {
        record->SetPath(paths[0].toStdString(), "local hash", "cloud hash");
    }
    return record;
}

void CloudManagerStage::Write(const QString& file)
{
    QFile written(file);
    if (written.open(QIODevice::WriteOnly)) {
        written.write("content");
    }
}

void CloudManagerStage::Do(const CloudDeed& deed)
{
    if (isBeingDeleted && deed.kind != CloudDeed::Answer && deed.kind != CloudDeed::Progress) {
        return;
    }
    switch (deed.kind) {
    case CloudDeed::RefreshTick:
        return HasManager() ? Tick() : void();
    case CloudDeed::Answer:
    case CloudDeed::AnswerAsAnother:
    case CloudDeed::Progress:
    case CloudDeed::ProgressAsAnother:
        return CallBack(deed);
    case CloudDeed::FlipSignedIn:
        return FlipSignedIn();
    case CloudDeed::FlipRefusal:
        return FlipRefusal(RefusableOperations().at(std::size_t(deed.subject) % RefusableOperations().size()));
    case CloudDeed::LetHashingThrow:
        hashingThrows = true;
        return;
    case CloudDeed::LetNormalizingThrow:
        normalizingThrows = true;
        return;
    case CloudDeed::FileAppears:
        return Write(FileOf(deed));
    case CloudDeed::FileVanishes:
        QFile::remove(FileOf(deed));
        return;
    case CloudDeed::ReplaceArguments:
        path = "/elsewhere.pdf";
        list.clear();
        documents.clear();
        records[deed.subject % recordCount] = MakeRecord(deed.subject);
        return;
    case CloudDeed::MarkAsSyncing:
        if (const File& record = records[deed.subject % recordCount]) {
            record->SetIsSyncingInProgress(true);
        }
        return;
    case CloudDeed::TakeCloudPart:
        if (const File& record = records[deed.subject % recordCount]) {
            record->GetRedactableCloudInfo().reset();
        }
        return;
    case CloudDeed::DeleteManager:
        return HasManager() ? Delete() : void();
    case CloudDeed::MakeManager:
        return HasManager() ? void() : MakeManager();
    default:
        return HasManager() ? Operate(deed) : void();
    }
}

void CloudManagerStage::Delete()
{
    Trace before = journal->Take();
    isBeingDeleted = true;
    DeleteManager();
    isBeingDeleted = false;
    Trace canceled = journal->Take();
    std::sort(canceled.begin(), canceled.end());
    for (const Trace& part : {before, canceled}) {
        for (const std::string& line : part) {
            journal->Write(line);
        }
    }
}

void CloudManagerStage::CallBack(const CloudDeed& deed)
{
    const qint64 count = RequestCount();
    if (count == 0) {
        return;
    }
    const qint64 request = std::max<qint64>(count - deed.subject, 1);
    const qint64 other = std::max<qint64>(count - deed.detail, 1);
    const bool asAnother = deed.kind == CloudDeed::AnswerAsAnother || deed.kind == CloudDeed::ProgressAsAnother;
    const qint64 id = asAnother ? (deed.detail == 5 ? -1 : other) : request;
    if (deed.kind == CloudDeed::Answer || deed.kind == CloudDeed::AnswerAsAnother) {
        Answer(request, id, AnswerOf(deed));
    } else {
        Progress(request, id, deed.detail * 25);
    }
}

QString CloudManagerStage::FileOf(const CloudDeed& deed) const
{
    const File& record = records[deed.subject];
    const auto local = record ? QString::fromStdString(record->GetPath().utf8string()) : QString();
    return local.isEmpty() ? paths[deed.detail % 3] : local;
}

void CloudManagerStage::Begin()
{
    MakeManager();
}

void CloudManagerStage::Finish()
{
    Act({CloudDeed::DeleteManager});
    Act({CloudDeed::Answer});
}

Trace CloudManagerStage::State()
{
    Trace trace = {std::string("syncing: ") + (HasManager() && IsSyncInProgress() ? "yes" : "no")};
    for (const File& record : qAsConst(records)) {
        trace.push_back("record: " + TextOf(record));
    }
    for (const QString& name : QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name)) {
        trace.push_back("file: " + name.toStdString() + ' ' + std::to_string(QFile(folder + '/' + name).size()));
    }
    return trace;
}

std::string FieldsText(const QMap<QString, QString>& fields)
{
    std::string text = "  ";
    for (auto field = fields.begin(); field != fields.end(); ++field) {
        text += ' ' + field.key().toStdString() + '=' + field.value().toStdString();
    }
    return text;
}

} // namespace Norlis::Test
