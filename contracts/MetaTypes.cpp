#include <contracts/MetaTypes.h>

#include <contracts/AbstractCloudManager.h>
#include <contracts/FileInfo.h>

#include <QList>

namespace Norlis::PDF {

void RegisterMetaTypes()
{
    // The meta-object holds a parameter's type as it is spelled in the signal, so both spellings are registered.
    [[maybe_unused]] static const bool once = [] {
        // By name alone: whether to declare std::string as a meta-type is for each program to say.
        qRegisterMetaType<std::string>("std::string");
        qRegisterMetaType<std::shared_ptr<FileInfo>>();
        qRegisterMetaType<std::shared_ptr<FileInfo>>("std::shared_ptr<FileInfo>");
        qRegisterMetaType<std::shared_ptr<const FileInfo>>();
        qRegisterMetaType<std::shared_ptr<const FileInfo>>("std::shared_ptr<const FileInfo>");
        qRegisterMetaType<QList<std::shared_ptr<FileInfo>>>();
        qRegisterMetaType<QList<std::shared_ptr<FileInfo>>>("QList<std::shared_ptr<FileInfo>>");
        qRegisterMetaType<FileInfo::PreviewSize>();
        qRegisterMetaType<FileInfo::PreviewSize>("FileInfo::PreviewSize");
        return true;
    }();
}

} // namespace Norlis::PDF
