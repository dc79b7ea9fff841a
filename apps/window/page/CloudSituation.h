#pragma once

#include "StatusLine.h"

#include <host/session/CloudSession.h>

#include <QDateTime>
#include <QObject>
#include <QString>

namespace Norlis::Window {

class MessageBar;

/// How it stands with the cloud: whether the user is signed in, of when the list is, and what has failed, which is told
/// in messages and in the line at the bottom. What fails of a transfer is told in the list of transfers.
class CloudSituation : public QObject {
    Q_OBJECT

public:
    /// All of them outlive this.
    CloudSituation(Host::CloudSession& session, MessageBar& message, StatusLine& status);

    /// Signs in, and stays signed in.
    void SignIn(const QString& newToken);

    /// To be called when the session has been signed in elsewhere.
    void OnSignedIn();

    bool IsSignedIn() const;
    bool IsOffline() const;

    /// Whether there has been a list.
    bool HasList() const;

    /// Once the cloud is there again, asks for the list if that has not been done since.
    void RefreshOldList();

    /// Of the line at the bottom, what it tells of the cloud.
    void Describe(StatusLine::Situation& situation) const;

signals:
    /// Any of it.
    void Changed();

    /// The cloud is there again.
    void CameBack();
    void SignInRequested();

private:
    void OnListRefreshed();
    void OnConnectionChanged();
    void OnFailed(const Host::CloudProblem& problem);
    void OnManyGone(int gone, int before);

    Host::CloudSession& session;
    MessageBar& message;
    StatusLine& status;
    QString token; ///< of the sign-in in progress, for another attempt; empty otherwise
    bool isSignedIn = false;
    bool isRefreshing = false;
    bool isListOld = false;
    bool isAway = false;     ///< whether the cloud has not answered since it was found offline
    int countBeforeLoss = 0; ///< of the documents, when many were gone at once; they may come back
    QDateTime refreshedAt;
    QDateTime askedAt; ///< the cloud, for a list or to sign in
};

} // namespace Norlis::Window
