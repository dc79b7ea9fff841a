#include "CommandCatalogue.h"

#include "DoctorCommand.h"
#include "DownloadCommand.h"
#include "ListCommand.h"
#include "LoginCommand.h"
#include "LogoutCommand.h"
#include "PreviewCommand.h"
#include "QuotaCommand.h"
#include "RemoveCommand.h"
#include "UploadCommand.h"
#include "WatchCommand.h"

#include <algorithm>

namespace Norlis::Terminal {

namespace {

template <typename Type>
std::unique_ptr<Command> Make(const Environment& environment)
{
    return std::make_unique<Type>(environment);
}

} // namespace

const std::vector<CommandEntry>& CommandCatalogue()
{
    static const std::vector<CommandEntry> catalogue = {
        {"login",
         Make<LoginCommand>,
         {},
         "Sign in to a cloud service and remember it",
         "A service is a folder, given as a path or a file: URL, or a WebDAV server, given as https://user@host/path/, "
         "where the path is that of the collection that holds the documents. A folder needs no password. The password "
         "for a server is asked for, or read from --token-file, or from standard input if that is not a terminal; "
         "without a user name the server is sent a bearer token. Enter nothing for a server that needs no password. "
         "The password and these options are kept in the data folder, readable by you alone, until you log out.",
         {"user", "token-file", "ca-file", "allow-plain-http"},
         {"norlis-cloud login --service ~/Cloud", "norlis-cloud login --service https://anna@cloud.example/dav/"}},
        {"logout",
         Make<LogoutCommand>,
         {},
         "Forget the password or token for a service",
         "The stored list and all files are kept.",
         {},
         {"norlis-cloud logout"}},
        {"list",
         Make<ListCommand>,
         {},
         "List the documents in the cloud",
         "The state compares the local copy with the one in the cloud. --offline shows the list as it was last "
         "fetched, without contacting the cloud.",
         {"offline", "names"},
         {"norlis-cloud list", "norlis-cloud list --offline --json"}},
        {"upload",
         Make<UploadCommand>,
         "FILE...",
         "Upload files to the cloud",
         "A file that is the local copy of a document updates that document if it has changed; with --new it becomes a "
         "new document instead. If the document was changed in the cloud too, --on-conflict decides: both uploads the "
         "file as a new document, mine replaces the version in the cloud, theirs replaces the file, and fail, which is "
         "usual where nobody can be asked, does nothing. Of a new file whose name is taken in the cloud, both gives it "
         "a number, which is usual, mine replaces that document, and theirs leaves it alone.",
         {"new", "on-conflict"},
         {"norlis-cloud upload report.pdf notes.pdf", "norlis-cloud upload --on-conflict=both report.pdf",
          "norlis-cloud upload -- -strange-name.pdf"}},
        {"download",
         Make<DownloadCommand>,
         "DOCUMENT...",
         "Download documents to a folder",
         "An existing file is replaced only if it is an unchanged copy of the same document. Otherwise --on-conflict "
         "decides: both gives a copy with changes another name, and the document a number if the file is no copy of "
         "it; mine keeps the file and fetches nothing, theirs replaces it if it is a copy of the document, whose "
         "changes are lost, and fail, which is usual where nobody can be asked, does nothing. A local copy with "
         "changes in another folder stays the one that the list shows.",
         {"to", "on-conflict"},
         {"norlis-cloud download report.pdf --to ~/Documents"}},
        {"remove",
         Make<RemoveCommand>,
         "DOCUMENT...",
         "Delete documents from the cloud",
         "Local copies are kept. A document that has changed in the cloud since you last saw it in a list, sent it or "
         "fetched it is only removed with --force.",
         {"force"},
         {"norlis-cloud remove \"old report.pdf\""}},
        {"preview",
         Make<PreviewCommand>,
         "DOCUMENT...",
         "Save previews of the first page and show their paths",
         {},
         {},
         {"norlis-cloud preview report.pdf"},
         true},
        {"quota", Make<QuotaCommand>, {}, "Show how much storage is used", {}, {}, {"norlis-cloud quota"}},
        {"watch",
         Make<WatchCommand>,
         {},
         "Show changes in the cloud until Ctrl-C",
         "Starts with what has changed since the last watch. It keeps a list of its own, so other commands can be used "
         "at the same time.",
         {"interval"},
         {"norlis-cloud watch --interval 10"}},
        {"doctor",
         Make<DoctorCommand>,
         {},
         "Show what the cloud service supports",
         "Leaves nothing behind in the cloud. The output identifies neither you nor the service nor any document, so "
         "it is safe to share.",
         {},
         {"norlis-cloud doctor"}},
    };
    return catalogue;
}

const CommandEntry* FindCommand(const QString& name)
{
    const auto& catalogue = CommandCatalogue();
    const auto found =
        std::find_if(catalogue.begin(), catalogue.end(), [&](const CommandEntry& entry) { return entry.name == name; });
    return found == catalogue.end() ? nullptr : &*found;
}

} // namespace Norlis::Terminal
