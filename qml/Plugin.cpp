#include "CloudDocuments.h"

#include <QQmlEngine>
#include <QQmlExtensionPlugin>

namespace Norlis::Qml {

/// Makes the element known to an engine that imports the module.
class Plugin : public QQmlExtensionPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QQmlExtensionInterface_iid)

public:
    void registerTypes(const char* uri) override
    {
        qmlRegisterType<CloudDocuments>(uri, 1, 0, "CloudDocuments");
    }
};

} // namespace Norlis::Qml

#include "Plugin.moc"
