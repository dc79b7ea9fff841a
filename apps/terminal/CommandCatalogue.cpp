#include "CommandCatalogue.h"

#include <algorithm>

namespace Norlis::Terminal {

const std::vector<CommandEntry>& CommandCatalogue()
{
    static const std::vector<CommandEntry> catalogue = {
        {"login",
         {},
         "Sign in to a cloud service and remember it",
         "A service is a folder, given as a path or a file: address, or a WebDAV server, given as "
         "https://user@host/path/ with the path of the collection that holds the documents. A folder needs no "
         "password. That of a server is asked for, or read from --token-file, or from standard input when that is not "
         "a terminal; without a user the server is given a bearer token. Password and options are kept in the data "
         "folder, readable for you alone, until logout.",
         {"user", "token-file", "ca-file", "allow-plain-http"},
         {"norlis-cloud login --service ~/Cloud", "norlis-cloud login --service https://anna@cloud.example/dav/"}},
        {"logout",
         {},
         "Forget the password or token of a service",
         "The stored list and all files stay.",
         {},
         {"norlis-cloud logout"}},
        {"list",
         {},
         "Show the documents of the cloud",
         "The state tells how the local copy and the cloud copy stand to each other. --offline shows the list as it "
         "was last fetched, without asking the cloud.",
         {"offline"},
         {"norlis-cloud list", "norlis-cloud list --offline --json"}},
        {"upload",
         "FILE...",
         "Send files to the cloud",
         "A file that is the local copy of a document updates that document when it has changed; --new makes a new "
         "document of it instead. A name that is taken in the cloud gets a number.",
         {"new"},
         {"norlis-cloud upload report.pdf notes.pdf", "norlis-cloud upload -- -strange-name.pdf"}},
        {"download",
         "DOCUMENT...",
         "Fetch documents into a folder",
         "A file that stands there already is replaced only if it is the unchanged local copy of the same document.",
         {"to"},
         {"norlis-cloud download report.pdf --to ~/Documents"}},
        {"remove",
         "DOCUMENT...",
         "Delete documents from the cloud",
         "Local copies stay.",
         {},
         {"norlis-cloud remove \"old report.pdf\""}},
        {"preview",
         "DOCUMENT...",
         "Store pictures of the first page and show where",
         {},
         {},
         {"norlis-cloud preview report.pdf"}},
        {"quota", {}, "Show how much storage is used", {}, {}, {"norlis-cloud quota"}},
        {"watch",
         {},
         "Show what changes in the cloud, until Ctrl-C",
         "Begins with what has changed since the last watch. Keeps a list of its own, so that other commands can be "
         "used meanwhile.",
         {"interval"},
         {"norlis-cloud watch --interval 10"}},
        {"doctor",
         {},
         "Show what the cloud service is able to do",
         "Leaves nothing behind in the cloud. The result names neither you nor the service nor documents, so it can "
         "be shown to others.",
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
