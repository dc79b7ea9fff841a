#pragma once

#include "SessionCommand.h"

namespace Norlis::Terminal {

/// Shows the list of documents.
class ListCommand : public SessionCommand {
    Q_OBJECT

public:
    explicit ListCommand(const Environment& environment);

    void Start() override;

protected:
    void Work() override;

private:
    void Show();
};

} // namespace Norlis::Terminal
