#pragma once

#include "Arguments.h"
#include "Output.h"

#include <QByteArray>
#include <QObject>
#include <QQueue>
#include <QSocketNotifier>

#include <functional>
#include <optional>

namespace Norlis::Terminal {

/// Decides about conflicts as --on-conflict says: asks at the terminal, one question after the other, while transfers
/// go on, or answers at once.
class Conflicts : public QObject {
    Q_OBJECT

public:
    using Choice = OnConflict;
    using Decision = std::function<void(Choice)>;

    Conflicts(const Arguments& arguments, Output& output);

    /// Whether anything but the usual is wanted about names that are taken in the cloud: then the list has to be known.
    bool ConcernTakenNames() const;

    /// \param usual   what is done where nothing was said and nobody can be asked: Both or Fail
    /// \param decided called from the event loop, with Both, Mine, Theirs or Fail
    void Decide(const QString& question, Choice usual, const Decision& decided);

    /// Whether a question waits for its answer, below which nothing should be written.
    bool IsAsking() const;

private:
    struct Question {
        QString text;
        Decision decided;
    };

    bool MayAsk() const;
    void AskNext();
    void Read();
    void Answer(Choice choice);

    const std::optional<Choice> wanted;
    Output& output;
    QQueue<Question> questions; ///< the first one has been asked
    QByteArray typed;
    std::optional<QSocketNotifier> input;
};

} // namespace Norlis::Terminal
