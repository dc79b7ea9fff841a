// The documents of a folder or of a WebDAV server, with pictures, sign-in, uploads by drop, downloads, and what failed.

import Norlis.Cloud 1.0
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

ApplicationWindow {
    property alias service: cloud.service
    property alias dataFolder: cloud.dataFolder
    property url downloads // where they go

    function signIn() {
        cloud.signIn(password.text)
        password.clear()
    }

    // Of the rows that there are just now: those that are seen, and a few more.
    function showPictures() {
        const rows = Array.from(list.contentItem.children).filter(row => row.documentId)
        cloud.showPreviews(rows.map(row => row.documentId))
    }

    title: cloud.service
    visible: true
    width: 480
    height: 600

    CloudDocuments {
        id: cloud
        onFailed: function(problem) {
            status.text = problem.text
        }
        onUploadProgress: function(path, percent) { status.text = path + ": " + percent + " %" }
        onUploaded: function(path) { status.text = path + " is in the cloud." }
        onDownloaded: function(id, path) { status.text = path + " is here." }
        onRefreshed: Qt.callLater(showPictures)
        Component.onCompleted: signIn() // a folder asks for no password
    }

    header: RowLayout {
        TextField {
            id: password
            Layout.fillWidth: true
            echoMode: TextInput.Password
            enabled: !cloud.signedIn
            placeholderText: cloud.signedIn ? "Signed in" : "Password"
            onAccepted: signIn()
        }
        Button {
            text: cloud.signedIn ? "Sign out" : "Sign in"
            onClicked: cloud.signedIn ? cloud.signOut() : signIn()
        }
    }

    ListView {
        id: list
        anchors.fill: parent
        clip: true
        model: cloud.documents
        onContentYChanged: Qt.callLater(showPictures)
        onCountChanged: Qt.callLater(showPictures)
        onHeightChanged: Qt.callLater(showPictures)
        delegate: RowLayout {
            readonly property string documentId: model.id
            readonly property bool isChanged: model.state === CloudDocuments.ChangedLocally

            width: list.width
            Image {
                Layout.preferredWidth: 80
                Layout.preferredHeight: 110
                cache: false // the picture of another version has the same address
                fillMode: Image.PreserveAspectFit
                source: model.previews.medium || ""
            }
            Label {
                Layout.fillWidth: true
                elide: Text.ElideMiddle
                text: model.name
            }
            Button {
                text: isChanged ? "Save" : "Fetch"
                onClicked: isChanged ? cloud.uploadChanges(model.id) : cloud.download(model.id, downloads)
            }
            Button {
                text: "Remove"
                onClicked: cloud.remove(model.id)
            }
        }
    }

    DropArea {
        anchors.fill: parent
        onDropped: function(drop) { cloud.upload(drop.urls) }
    }

    footer: Label {
        id: status
        padding: 6
        wrapMode: Text.Wrap
    }
}
