import Norlis.Cloud 1.0
import QtQuick 2.15
import QtQuick.Window 2.15

Window {
    property alias service: cloud.service
    property url downloads

    visible: true
    width: 400
    height: 500

    CloudDocuments {
        id: cloud
        onFailed: function(problem) { status.text = problem.text }
        onDownloaded: function(id, path) { status.text = path }
        Component.onCompleted: signIn()
    }
    ListView {
        anchors.fill: parent
        model: cloud.documents
        delegate: Text {
            text: model.name
            TapHandler { onTapped: cloud.download(model.id, downloads) }
        }
    }
    Text {
        id: status
        anchors.bottom: parent.bottom
        width: parent.width
        wrapMode: Text.Wrap
    }
}
