#include <QStringList>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cxxabi.h>

#include <cstdlib>
#include <fstream>
#include <memory>
#include <regex>
#include <string>
#include <type_traits>
#include <vector>

namespace Norlis::Test {

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using Slots = std::vector<std::string>;

/// A slot's symbol as a reader would write it: the class left out, types in short.
std::string Readable(const std::string& symbol)
{
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> demangled(
        abi::__cxa_demangle(symbol.c_str(), nullptr, nullptr, &status), std::free);
    std::string text = status == 0 ? demangled.get() : symbol;
    text = std::regex_replace(text, std::regex("^(virtual|non-virtual) thunk to "), "");
    text = std::regex_replace(text, std::regex("\\[abi:cxx11\\]"), "");
    text = std::regex_replace(text, std::regex("std::__cxx11::basic_string<char, [^<>]*<char>, [^<>]*<char> ?>"),
                              "std::string");
    text = std::regex_replace(text, std::regex("Norlis::(PDF|Social|Test)::(Cloud::|Settings::)?"), "");
    text = std::regex_replace(text, std::regex("^[A-Za-z:]*::(~?[A-Za-z_]+\\()"), "$1");
    text = std::regex_replace(text, std::regex("^~[A-Za-z]+\\(\\)"), "destructor");
    text = std::regex_replace(text, std::regex("Ability::File<NorlisCloudSharingResult>::"), "");
    text = std::regex_replace(text, std::regex("std::function<void \\(long long, RequestResult(, )?"), "Done<(");
    text = std::regex_replace(text, std::regex(" >"), ">");
    return text;
}

/// The groups of slots of a class's table: its own operations after those of its primary base, then one group for each
/// further base.
std::vector<Slots> TablesOf(const std::string& className)
{
    std::ifstream assembly(VIRTUAL_TABLES);
    EXPECT_TRUE(assembly.is_open()) << VIRTUAL_TABLES;
    const std::string begin = "_ZTV" + std::to_string(className.size()) + className + ":";
    const std::regex entry("^\\s*\\.(?:quad|xword|8byte|long)\\s+(\\S+)");
    std::string line;
    while (line != begin) {
        if (!std::getline(assembly, line)) {
            ADD_FAILURE() << className << " has no table";
            return {};
        }
    }
    std::vector<Slots> groups;
    for (std::smatch match; std::getline(assembly, line) && std::regex_search(line, match, entry);) {
        const std::string symbol = match[1];
        if (symbol.rfind("_ZTI", 0) == 0) {
            groups.emplace_back(); // offsets stand before the type, operations after it
        } else if (symbol[0] == '_') {
            groups.back().push_back(Readable(symbol));
        }
    }
    return groups;
}

/// The only group of a class with one base.
Slots TableOf(const std::string& className)
{
    const auto groups = TablesOf(className);
    EXPECT_EQ(groups.size(), 1u);
    return groups.empty() ? Slots() : groups.front();
}

/// The slots that follow those of QObject.
Slots TableAfterObject(const std::string& className)
{
    const Slots objectSlots = {"metaObject() const",
                               "qt_metacast(char const*)",
                               "qt_metacall(QMetaObject::Call, int, void**)",
                               "destructor",
                               "destructor",
                               "event(QEvent*)",
                               "eventFilter(QObject*, QEvent*)",
                               "timerEvent(QTimerEvent*)",
                               "childEvent(QChildEvent*)",
                               "customEvent(QEvent*)",
                               "connectNotify(QMetaMethod const&)",
                               "disconnectNotify(QMetaMethod const&)"};
    const auto table = TableOf(className);
    if (table.size() < objectSlots.size()) {
        ADD_FAILURE() << className << " is no QObject";
        return table;
    }
    const auto own = table.begin() + static_cast<std::ptrdiff_t>(objectSlots.size());
    EXPECT_EQ(Slots(table.begin(), own), objectSlots);
    return Slots(own, table.end());
}

// A class in Qt 5, another name in Qt 6.
const std::string stringList = std::is_same_v<QStringList, QList<QString>> ? "QList<QString>" : "QStringList";

const Slots fileManagerOperations = {
    "SetImageGetCallback(std::function<QImage (QString const&)> const&)",
    "GetIdByPath(Norlis::ioPath const&) const",
    "Add(std::shared_ptr<FileInfo> const&)",
    "Remove(std::shared_ptr<FileInfo> const&)",
    "Rename(" + stringList + " const&, QString const&)",
    "Clear()",
    "Update(std::shared_ptr<FileInfo const> const&)",
    "FilesCount() const",
    "Limit() const",
    "GetFileInfo(QString const&) const",
    "GetDocumentName(int) const",
    "GetPreviewsSet(int) const",
    "GetDocumentId(int) const",
    "GetDocumentPath(int) const",
    "GetModifiedDateTime(int) const",
    "GetDocumentState(int) const",
    "GetFileSize(int) const",
};

const Slots cloudManagerOperations = {
    "Authorization(QString const&)",
    "Logout()",
    "Upload(std::shared_ptr<FileInfo> const&)",
    "Upload(QString const&)",
    "Upload(QList<QString> const&)",
    "Download(std::shared_ptr<FileInfo> const&, QString const&)",
    "Download(QList<std::shared_ptr<FileInfo>> const&, QString const&)",
    "RetrieveFilesList()",
    "RemoveFile(std::shared_ptr<FileInfo> const&)",
    "CancelUploading(QString const&)",
    "CancelDownloading(std::shared_ptr<FileInfo> const&)",
    "UserQuota()",
    "RetrieveFilePreview(std::shared_ptr<FileInfo> const&, FileInfo::PreviewSize, QSize const&)",
};

const std::string fields = "QMap<QString, QString> const&";

// Cancel is the virtual base of every ability, so its slots come first in each table.
const Slots authOperations = {
    "destructor",
    "destructor",
    "cancelOperation(long long)",
    "auth(" + fields + ", Done<()>&&)",
    "logout()",
    "loggedIn()",
    "userName(Done<(QString)>&&)",
    "userProfile(Done<(QUrl)>&&)",
    "userPic(Done<(QString)>&&)",
    "userPic(Done<(QPixmap)>&&)",
};

const Slots fileOperations = {
    "destructor",
    "destructor",
    "cancelOperation(long long)",
    "retriveFileInfo(FileFieldData const&, Done<(FileInfo)>&&)",
    "retriveFileList(FileFieldData const&, Done<(QList<FileInfo>)>&&)",
    "downloadFile(FileFieldData const&, Done<()>&&, std::function<void (long long, int)>&&)",
    "deleteFile(FileFieldData const&, Done<()>&&)",
    "uploadFile(QString const&, " + fields +
        ", Done<(NorlisCloudSharingResult const&)>&&, std::function<void (long long, int)>&&)",
};

const Slots quotaOperations = {
    "destructor",
    "destructor",
    "cancelOperation(long long)",
    "userQuota(Done<(QMap<QString, Ability::Quota::QuotaValue> const&)>&&)",
};

const Slots previewOperations = {
    "destructor",
    "destructor",
    "cancelOperation(long long)",
    "retrievePreview(" + fields + ", Done<(QPixmap)>&&)",
};

TEST(VirtualOrderTest, FileManager)
{
    EXPECT_THAT(TableAfterObject("AbstractFileManagerHeir"), ElementsAreArray(fileManagerOperations));
    EXPECT_THAT(TableAfterObject("FilesManagerHeir"), ElementsAreArray(fileManagerOperations));
}

TEST(VirtualOrderTest, CloudManager)
{
    EXPECT_THAT(TableAfterObject("AbstractCloudManagerHeir"), ElementsAreArray(cloudManagerOperations));
    EXPECT_THAT(TableAfterObject("CloudManagerHeir"), ElementsAreArray(cloudManagerOperations));
}

TEST(VirtualOrderTest, Abilities)
{
    EXPECT_THAT(TableOf("CancelHeir"), ElementsAre("destructor", "destructor", "cancelOperation(long long)"));
    EXPECT_THAT(TableOf("AuthHeir"), ElementsAreArray(authOperations));
    EXPECT_THAT(TableOf("FileHeir"), ElementsAreArray(fileOperations));
    EXPECT_THAT(TableOf("QuotaHeir"), ElementsAreArray(quotaOperations));
    EXPECT_THAT(TableOf("PreviewHeir"), ElementsAreArray(previewOperations));
}

/// The table that a table adds to those of Cancel.
Slots WithoutCancel(const Slots& operations)
{
    return Slots(operations.begin() + 3, operations.end());
}

TEST(VirtualOrderTest, ProtocolHasItsAbilitiesSideBySideAndCancelOnce)
{
    const auto groups = TablesOf("ProxyHeir");
    ASSERT_EQ(groups.size(), 4u);

    // The first group is that of the first ability, to which the class appends what it implements of the others.
    Slots all = authOperations;
    for (const auto& operations : {fileOperations, quotaOperations, previewOperations}) {
        const auto added = WithoutCancel(operations);
        all.insert(all.end(), added.begin(), added.end());
    }
    EXPECT_THAT(groups[0], ElementsAreArray(all));

    size_t next = 1;
    for (const auto& operations : {fileOperations, quotaOperations, previewOperations}) {
        Slots expected = {"destructor", "destructor"};
        const auto added = WithoutCancel(operations);
        expected.insert(expected.end(), added.begin(), added.end());
        EXPECT_THAT(groups[next++], ElementsAreArray(expected));
    }
}

TEST(VirtualOrderTest, CollaboratorsOfTheManagers)
{
    EXPECT_THAT(TableOf("StorageHeir"),
                ElementsAre("destructor", "destructor", "RemoveRecord(std::string const&)",
                            "SetValue(std::string const&, std::string const&, std::string const&)", "ReadAll()"));
    EXPECT_THAT(TableOf("FileSystemHeir"), ElementsAre("destructor", "destructor", "Exists(Norlis::ioPath const&)",
                                                       "NormalizePath(Norlis::ioPath const&)"));
    EXPECT_THAT(TableOf("HashCalculatorHeir"),
                ElementsAre("destructor", "destructor", "CalculateHash(Norlis::ioPath const&)"));
    EXPECT_THAT(TableOf("SettingsHeir"),
                ElementsAre("destructor", "destructor", "IsAutoRefreshEnabled()", "GetAutoRefreshInterval()"));
}

} // namespace

} // namespace Norlis::Test
