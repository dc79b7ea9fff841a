#pragma once

#include <contracts/NorlisCloudProtocol.h>

#include <functional>
#include <string>
#include <vector>

namespace Norlis::Test {

/// What happened to the protocol objects of a program that is linked with the recording NorlisCloudProtocol instead of
/// the real one.
struct CloudProtocolRecording {
    int constructed = 0;
    int destroyed = 0;

    // Arguments of the constructor.
    Social::OAuth2::AuthInfo authInfo = {};
    std::string name = {};
    QObject* parent = nullptr;
    bool constructorThrows = false;

    /// Names of the operations called, the overload told by the payload: "userPic(QPixmap)".
    std::vector<std::string> calls = {};

    // Of the last call: where its by-reference arguments stood, and the id that it was given.
    const void* fields = nullptr;
    const void* localPath = nullptr;
    qint64 cancelledId = 0;

    /// Calls the callbacks of the last request.
    std::function<void()> answer = {};

    // What the operations answer.
    qint64 nextId = 0;
    bool loggedIn = false;
};

/// The recording of this program; assign {} to begin anew.
CloudProtocolRecording& Recorded();

} // namespace Norlis::Test
