#include "CloudManagerDriver.h"

#include "RecordText.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace Norlis::Test {

CloudManagerDriver::CloudManagerDriver(const QString& folder) : folder(folder)
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

std::string CloudManagerDriver::HashOf(const ioPath& file)
{
    journal->Write("-> CalculateHash " + file.utf8string());
    if (std::exchange(hashingThrows, false)) {
        throw std::runtime_error("no hash");
    }
    return "hash of " + file.utf8string();
}

ioPath CloudManagerDriver::Normalized(const ioPath& file)
{
    journal->Write("-> NormalizePath " + file.utf8string());
    if (std::exchange(normalizingThrows, false)) {
        throw std::runtime_error("no normal form");
    }
    return QDir::cleanPath(QString::fromStdString(file.utf8string())).toStdString();
}

void CloudManagerDriver::WriteRecord(const File& record)
{
    const int number = records.indexOf(record);
    journal->Write("    record " + (number < 0 ? std::string("of its own") : std::to_string(number)) + ": " +
                   TextOf(record));
}

CloudManagerDriver::File CloudManagerDriver::MakeRecord(int number) const
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

void CloudManagerDriver::Write(const QString& file)
{
    QFile written(file);
    if (written.open(QIODevice::WriteOnly)) {
        written.write("content");
    }
}

void CloudManagerDriver::Do(const CloudAction& action)
{
    if (isBeingDeleted && action.kind != CloudAction::Answer && action.kind != CloudAction::Progress) {
        return;
    }
    switch (action.kind) {
    case CloudAction::RefreshTick:
        return HasManager() ? Tick() : void();
    case CloudAction::Answer:
    case CloudAction::AnswerAsAnother:
    case CloudAction::Progress:
    case CloudAction::ProgressAsAnother:
        return CallBack(action);
    case CloudAction::FlipSignedIn:
        return FlipSignedIn();
    case CloudAction::FlipRefusal:
        return FlipRefusal(RefusableOperations().at(std::size_t(action.subject) % RefusableOperations().size()));
    case CloudAction::LetHashingThrow:
        hashingThrows = true;
        return;
    case CloudAction::LetNormalizingThrow:
        normalizingThrows = true;
        return;
    case CloudAction::FileAppears:
        return Write(FileOf(action));
    case CloudAction::FileVanishes:
        QFile::remove(FileOf(action));
        return;
    case CloudAction::ReplaceArguments:
        path = "/elsewhere.pdf";
        list.clear();
        documents.clear();
        records[action.subject % recordCount] = MakeRecord(action.subject);
        return;
    case CloudAction::MarkAsSyncing:
        if (const File& record = records[action.subject % recordCount]) {
            record->SetIsSyncingInProgress(true);
        }
        return;
    case CloudAction::TakeCloudPart:
        if (const File& record = records[action.subject % recordCount]) {
            record->GetRedactableCloudInfo().reset();
        }
        return;
    case CloudAction::DeleteManager:
        return HasManager() ? Delete() : void();
    case CloudAction::MakeManager:
        return HasManager() ? void() : MakeManager();
    default:
        return HasManager() ? Operate(action) : void();
    }
}

void CloudManagerDriver::Delete()
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

void CloudManagerDriver::CallBack(const CloudAction& action)
{
    const qint64 count = RequestCount();
    if (count == 0) {
        return;
    }
    const qint64 request = std::max<qint64>(count - action.subject, 1);
    const qint64 other = std::max<qint64>(count - action.detail, 1);
    const bool asAnother = action.kind == CloudAction::AnswerAsAnother || action.kind == CloudAction::ProgressAsAnother;
    const qint64 id = asAnother ? (action.detail == 5 ? -1 : other) : request;
    if (action.kind == CloudAction::Answer || action.kind == CloudAction::AnswerAsAnother) {
        Answer(request, id, AnswerOf(action));
    } else {
        Progress(request, id, action.detail * 25);
    }
}

QString CloudManagerDriver::FileOf(const CloudAction& action) const
{
    const File& record = records[action.subject];
    const auto local = record ? QString::fromStdString(record->GetPath().utf8string()) : QString();
    return local.isEmpty() ? paths[action.detail % 3] : local;
}

void CloudManagerDriver::Begin()
{
    MakeManager();
}

void CloudManagerDriver::Finish()
{
    Act({CloudAction::DeleteManager});
    Act({CloudAction::Answer});
}

Trace CloudManagerDriver::State()
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
