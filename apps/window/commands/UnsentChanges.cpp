#include "UnsentChanges.h"

#include <apps/common/PrintableText.h>
#include <apps/window/texts/KnownDocuments.h>
#include <apps/window/texts/Texts.h>
#include <apps/window/transfers/Transfers.h>
#include <apps/window/widgets/MessageBar.h>
#include <host/CloudDocumentsModel.h>
#include <host/session/CloudSession.h>

#include <QDir>
#include <QFileInfo>

namespace Norlis::Window {

using Host::CloudSession;
using Model = Host::CloudDocumentsModel;
using State = PDF::FileInfo::CloudStatus;

namespace {

constexpr int updateInterval = 300; // milliseconds

} // namespace

UnsentChanges::UnsentChanges(CloudSession& session, const Model& model, const Transfers& transfers, MessageBar& message,
                             const Preferences& preferences)
    : session(session),
      model(model),
      transfers(transfers),
      message(message),
      preferences(preferences)
{
    update.setSingleShot(true);
    update.setInterval(updateInterval);
    connect(&update, &QTimer::timeout, this, &UnsentChanges::Tell);
    for (const auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved}) {
        connect(&model, signal, &update, qOverload<>(&QTimer::start));
    }
    connect(&model, &QAbstractItemModel::dataChanged, &update, qOverload<>(&QTimer::start));
    connect(&session, &CloudSession::DocumentUploaded, &update, qOverload<>(&QTimer::start));
    connect(&session, &CloudSession::DocumentUploaded, this, &UnsentChanges::OnUploaded);
    connect(&session, &CloudSession::LocalCopyChanged, this,
            [this](const QString&, const QString& id) { OnSaved(id); });
    connect(&session, &CloudSession::CopyLeftBehind, this, &UnsentChanges::OnCopyLeft);
}

int UnsentChanges::Count() const
{
    return Find().ids.size();
}

void UnsentChanges::OnSaved(const QString& id)
{
    told.remove(id); // once more
    const int state = model.index(model.RowOf(id)).data(Model::StateRole).toInt();
    const bool isSimple = state == static_cast<int>(State::ChangedLocally); // otherwise the user has to decide
    if (preferences.UploadsByItself() && isSimple && !transfers.IsActive(id)) {
        emit UploadDue(id);
    }
    Tell();
}

void UnsentChanges::Remind()
{
    told.clear();
    Tell();
}

UnsentChanges::Changes UnsentChanges::Find() const
{
    Changes found;
    for (int row = 0; row < model.rowCount(); ++row) {
        const auto index = model.index(row);
        const auto state = static_cast<State>(index.data(Model::StateRole).toInt());
        if (state != State::ChangedLocally && state != State::ChangedOnBothSides) {
            continue;
        }
        const QString id = index.data(Model::IdRole).toString();
        if (!transfers.IsActive(id)) {
            found.ids.append(id);
            found.conflicts += state == State::ChangedOnBothSides ? 1 : 0;
        }
    }
    return found;
}

void UnsentChanges::Tell()
{
    const auto [ids, conflicts] = Find();
    const QSet<QString> known(ids.begin(), ids.end());
    const bool isNews = !told.contains(known);
    if (ids.isEmpty()) {
        message.Close(Topic::edited);
    }
    if (ids.isEmpty() || (!isNews && !message.Has(Topic::edited))) { // the user has closed it
        told = known;
        return;
    }
    told = known;
    const bool isConflict = ids.size() == 1 && conflicts == 1;
    const QString text =
        isConflict        ? tr("“%1” was changed both here and in the cloud.").arg(NameOf(session, ids.first()))
        : ids.size() == 1 ? tr("“%1” was changed.").arg(NameOf(session, ids.first()))
                          : tr("%n documents have changes that are not in the cloud.", nullptr, ids.size());
    const QString conflictText = conflicts > 0 && !isConflict
                                     ? tr("%n of them was (were) changed in the cloud, too.", nullptr, conflicts)
                                     : QString();
    message.Show(Topic::edited, text, conflictText,
                 {{isConflict ? tr("Resolve…") : tr("Upload Changes"), [this, ids = ids] { emit UploadChosen(ids); }}},
                 conflicts > 0 ? MessageBar::Kind::Decision : MessageBar::Kind::Reminder);
}

void UnsentChanges::OnCopyLeft(const QString& path)
{
    if (!message.Has(Topic::left)) {
        left.clear(); // the user has closed it
    }
    left.removeOne(path);
    left.append(path);
    TellOfCopiesLeft();
}

void UnsentChanges::OnUploaded(const QString& path)
{
    if (!left.removeOne(path) || !message.Has(Topic::left)) {
        return;
    }
    if (left.isEmpty()) {
        message.Close(Topic::left);
    } else {
        TellOfCopiesLeft();
    }
}

void UnsentChanges::TellOfCopiesLeft()
{
    const bool isOnlyOne = left.size() == 1;
    QStringList places;
    for (const QString& path : qAsConst(left)) {
        places.append(Apps::Printable(QDir::toNativeSeparators(path)));
    }
    message.Show(Topic::left,
                 isOnlyOne
                     ? tr("“%1” is no longer in the cloud.").arg(Apps::Printable(QFileInfo(left.first()).fileName()))
                     : tr("%n documents with changes of yours are no longer in the cloud.", nullptr, left.size()),
                 isOnlyOne ? tr("Your changes to it are in the file %1.").arg(places.first())
                           : tr("Your changes are in the files %1.").arg(SomeOf(places)),
                 {{tr("Upload as New"), [this, paths = left] { emit UploadAsNewChosen(paths); }},
                  {tr("Do Not Tell Again"), [this, paths = left] {
                       for (const QString& path : paths) {
                           session.ForgetCopyLeft(path);
                       }
                   }}});
}

} // namespace Norlis::Window
