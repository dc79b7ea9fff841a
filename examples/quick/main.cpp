// Shows a window in QML over a folder or a WebDAV server; the module is found by QML2_IMPORT_PATH:
//
//   quick list.qml FOLDER
//   quick documents.qml https://anna@cloud.example/dav/

#include <QDir>
#include <QGuiApplication>
#include <QQmlApplicationEngine>

int main(int argc, char** argv)
{
    QGuiApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    QQmlApplicationEngine engine;
    engine.setInitialProperties(
        {{"service", arguments.value(2)}, {"downloads", QUrl::fromLocalFile(QDir::currentPath())}});
    engine.load(arguments.value(1));
    return engine.rootObjects().isEmpty() ? 1 : application.exec();
}
