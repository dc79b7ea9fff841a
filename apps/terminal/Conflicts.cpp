#include "Conflicts.h"

#include <array>

#include <unistd.h>

namespace Norlis::Terminal {

namespace {

using Choice = Conflicts::Choice;

std::optional<Choice> ChoiceOf(const QByteArray& line)
{
    const QByteArray word = line.trimmed().toLower();
    constexpr std::array<std::pair<const char*, Choice>, 4> words = {
        {{"both", Choice::Both}, {"mine", Choice::Mine}, {"theirs", Choice::Theirs}, {"none", Choice::Fail}}};
    for (const auto& [each, choice] : words) {
        if (!word.isEmpty() && QByteArray(each).startsWith(word)) {
            return choice;
        }
    }
    return std::nullopt;
}

} // namespace

Conflicts::Conflicts(const Arguments& arguments, Output& output) : wanted(arguments.onConflict), output(output) {}

bool Conflicts::ConcernTakenNames() const
{
    return wanted || MayAsk();
}

void Conflicts::Decide(const QString& question, Choice usual, const Decision& decided)
{
    const bool asks = wanted ? *wanted == Choice::Ask : MayAsk();
    if (!asks) {
        const Choice choice = wanted.value_or(usual);
        QMetaObject::invokeMethod(
            this, [decided, choice] { decided(choice); }, Qt::QueuedConnection);
        return;
    }
    questions.enqueue({question, decided});
    if (questions.size() == 1) {
        AskNext();
    }
}

bool Conflicts::IsAsking() const
{
    return !questions.isEmpty();
}

bool Conflicts::MayAsk() const
{
    return output.IsTerminal() && !output.IsJson() && isatty(STDIN_FILENO) == 1 && isatty(STDERR_FILENO) == 1;
}

void Conflicts::AskNext()
{
    output.SetStatus({});
    output.Error(questions.head().text + ". Type both, mine, theirs or none");
    if (!input) {
        input.emplace(STDIN_FILENO, QSocketNotifier::Read);
        connect(&*input, &QSocketNotifier::activated, this, &Conflicts::Read);
    }
    input->setEnabled(true);
}

void Conflicts::Read()
{
    std::array<char, 256> bytes = {};
    const ssize_t count = read(STDIN_FILENO, bytes.data(), bytes.size());
    if (count <= 0) {
        Answer(Choice::Fail); // nobody is there any more
        return;
    }
    typed.append(bytes.data(), static_cast<int>(count));
    const int end = typed.indexOf('\n');
    if (end < 0) {
        return;
    }
    const auto choice = ChoiceOf(typed.left(end));
    typed.remove(0, end + 1);
    if (choice) {
        Answer(*choice);
    } else {
        AskNext();
    }
}

void Conflicts::Answer(Choice choice)
{
    input->setEnabled(false);
    const Question answered = questions.dequeue();
    if (!questions.isEmpty()) {
        AskNext();
    }
    answered.decided(choice);
}

} // namespace Norlis::Terminal
