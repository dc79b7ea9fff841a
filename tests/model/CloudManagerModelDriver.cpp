#include "CloudManagerDriver.h"

#include <set>

namespace Norlis::Test {

namespace {

/// The model.
class ModelDriver : public CloudManagerDriver, public CloudManagerSurroundings {
public:
    using CloudManagerDriver::CloudManagerDriver;

private:
    struct Held {
        CloudManagerModel& manager;
        ModelRequest request;
    };

    bool HasManager() const override
    {
        return manager != nullptr;
    }

    bool IsSyncInProgress() const override
    {
        return manager->IsSyncInProgressWithCloud();
    }

    void MakeManager() override
    {
        managers.push_back(std::make_unique<CloudManagerModel>(*this));
        manager = managers.back().get();
    }

    void DeleteManager() override
    {
        std::exchange(manager, nullptr)->Delete();
    }

    void Operate(const CloudAction& action) override
    {
        OperateOn(*manager, action);
    }

    void Tick() override
    {
        manager->RetrieveFilesList();
    }

    qint64 RequestCount() const override
    {
        return qint64(held.size());
    }

    void Answer(qint64 request, qint64 id, const ModelAnswer& answer) override
    {
        const Held to = held.at(std::size_t(request - 1));
        to.manager.Completed(to.request, id, answer);
    }

    void Progress(qint64 request, qint64 id, int value) override
    {
        const Held to = held.at(std::size_t(request - 1));
        if (to.request.kind == ModelRequest::Upload || to.request.kind == ModelRequest::Download) {
            to.manager.Progress(to.request, id, value);
        }
    }

    void FlipSignedIn() override
    {
        isSignedIn = !isSignedIn;
    }

    void FlipRefusal(const std::string& operation) override
    {
        if (!refused.insert(operation).second) {
            refused.erase(operation);
        }
    }

    bool IsLoggedIn() override
    {
        journal->Write("-> loggedIn");
        return isSignedIn;
    }

    void Logout() override
    {
        journal->Write("-> logout");
        Moment();
    }

    qint64 Send(CloudManagerModel& sender, const std::string& operation, const ModelRequest& request,
                const Fields& fields) override
    {
        const bool isRefused = refused.count(operation) != 0;
        if (!isRefused) {
            held.push_back({sender, request});
        }
        const qint64 id = isRefused ? -1 : qint64(held.size());
        journal->Write("-> " + operation + ' ' + (isRefused ? "refused" : std::to_string(id)));
        journal->Write(FieldsText(fields) + FieldsText({}) + request.path.toStdString());
        Moment();
        return id;
    }

    void Cancel(qint64 id) override
    {
        journal->Write("-> cancelOperation " + std::to_string(id));
        Moment();
    }

    std::string HashOf(const ioPath& file) override
    {
        return CloudManagerDriver::HashOf(file);
    }

    ioPath Normalized(const ioPath& file) override
    {
        return CloudManagerDriver::Normalized(file);
    }

    void Log(const std::string& record) override
    {
        journal->Write(record);
    }

    void Signal(const std::string& text, const Records& carried) override
    {
        journal->Write(text);
        for (const File& record : carried) {
            WriteRecord(record);
        }
        Moment();
    }

    std::vector<std::unique_ptr<CloudManagerModel>> managers; ///< deleted ones too, whose callbacks may still come
    CloudManagerModel* manager = nullptr;
    std::vector<Held> held;
    bool isSignedIn = true;
    std::set<std::string> refused;
};

} // namespace

std::unique_ptr<CloudManagerDriver> CloudManagerDriverOfModel(const QString& folder)
{
    return std::make_unique<ModelDriver>(folder);
}

} // namespace Norlis::Test
