#pragma once

#include "FileRequests.h"

#include <QHash>
#include <QObject>
#include <QTimer>

#include <memory>
#include <vector>

namespace Norlis::Social {

class ListingSink;
struct WebDavSession;

/// Looks at documents. Many at once are looked at by one listing, where that is less work for the server than so many
/// looks; so those that belong to changes under way wait for each other, for a moment.
class GroupedLooks : public QObject {
public:
    enum class Expected { There, Gone };
    enum class Wait { No, ForAnnounced };

    /// Somebody is going to look before long, as long as this lives. It must not outlive the looks.
    class Announcement {
    public:
        explicit Announcement(GroupedLooks& looks) : looks(looks)
        {
            ++looks.announced;
        }
        ~Announcement()
        {
            --looks.announced;
        }
        Announcement(const Announcement&) = delete;
        Announcement& operator=(const Announcement&) = delete;

    private:
        GroupedLooks& looks;
    };

    explicit GroupedLooks(WebDavSession& session);
    ~GroupedLooks() override;

    /// As FileRequests::Look. What a listing does not show as expected is looked at by itself, and so is a hidden name,
    /// which some servers never list.
    /// \param guard of the one who looks
    void Look(const QByteArray& name, Expected expected, Wait wait, const Lifetime::Guard& guard,
              FileRequests::Looked looked);

private:
    struct Item {
        QByteArray name;
        Expected expected;
        Wait wait;
        Lifetime::Guard guard;
        FileRequests::Looked looked;
    };
    using Items = std::vector<Item>;

    /// \param isOverdue they have waited long enough
    void Decide(bool isOverdue);
    void List();
    void OnListed(const HttpResponse& response);
    void LookAt(const Item& item);

    WebDavSession& session;
    FileRequests files;
    HttpRequestGroup requests;
    int announced = 0;
    Items waiting;
    Items listing; ///< those that the listing under way is for
    std::shared_ptr<ListingSink> sink;
    QHash<QByteArray, DavEntry> seen; ///< of those, by name
    QTimer soon;                      ///< what comes in the same turn of the event loop goes together
    QTimer overdue;                   ///< while some wait for others
};

} // namespace Norlis::Social
