// What an editor does with documents, from sign-in to removal, in QML. Each step is printed when it is done; the first
// one that fails, or that does not end, ends the program.

import Norlis.Cloud 1.0
import QtQuick 2.15

Item {
    id: tour

    property alias service: cloud.service
    property url downloads
    property url sample: Qt.resolvedUrl("sample.pdf")
    property bool isFetched

    function end(text) {
        console.error("not so: " + text)
        Qt.exit(1)
    }

    Timer {
        interval: 60000
        running: true
        onTriggered: end("the tour has ended in a minute")
    }

    CloudDocuments {
        id: cloud
        dataFolder: tour.downloads + "/data"
        onFailed: function(problem) { end(problem.message + ": " + problem.reason + " (" + problem.kind + ")") }
        onRefreshed: {
            console.log("listed")
            upload([tour.sample])
        }
        onUploaded: function(path, id) {
            console.log("uploaded")
            showPreviews([id])
        }
        onDownloaded: function(id, path) {
            console.log("downloaded")
            remove(id)
        }
        onRemoved: {
            console.log("removed")
            Qt.quit()
        }
        Component.onCompleted: signIn()
    }

    Repeater {
        model: cloud.documents
        delegate: Image {
            source: model.previews.medium || ""
            onStatusChanged: {
                if (status === Image.Ready && !tour.isFetched) {
                    console.log("a picture is there")
                    tour.isFetched = true
                    cloud.download(model.id, tour.downloads)
                } else if (status === Image.Error) {
                    end("the picture can be shown")
                }
            }
        }
    }
}
