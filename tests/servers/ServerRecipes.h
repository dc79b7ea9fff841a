#pragma once

#include "ServerFront.h"
#include "ServerProcess.h"
#include "WebDavServer.h"

namespace Norlis::Test {

/// What a server is to serve, and how.
struct ServerPlan {
    QString state;     ///< folder for configuration, logs and the like
    QString documents; ///< folder to serve
    QString user;
    QString password;
    quint16 port;
    quint16 portBehind = 0; ///< of the server that a front stands before
};

/// Writes a server's configuration and returns how to start it in the foreground.
ProgramStart Prepare(ServerKind kind, const ServerPlan& plan);

ProgramStart Prepare(FrontKind kind, const ServerPlan& plan);

/// Lets a server of that kind write into a folder.
void GiveToServer(ServerKind kind, const QString& folder);

} // namespace Norlis::Test
