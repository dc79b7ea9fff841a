#pragma once

#include "TintedFrame.h"

#include <QVector>

#include <functional>
#include <vector>

class QHBoxLayout;
class QLabel;
class QPushButton;
class QToolButton;

namespace Norlis::Window {

// What a message can be about.
namespace Topic {
const auto closing = QStringLiteral("closing");
const auto files = QStringLiteral("files");
const auto edited = QStringLiteral("edited");
const auto fetched = QStringLiteral("fetched");
const auto hidden = QStringLiteral("hidden");
const auto left = QStringLiteral("left");
const auto list = QStringLiteral("list");
const auto loss = QStringLiteral("loss");
const auto opening = QStringLiteral("opening");
const auto removal = QStringLiteral("removal");
const auto save = QStringLiteral("save");
const auto signIn = QStringLiteral("signIn");
const auto undo = QStringLiteral("undo");
} // namespace Topic

/// Shows one problem or notice below what it concerns, and offers remedies. It takes no focus. A message stays until it
/// is closed or until what failed succeeds; the ones that it hides come back then. How many there are is on a button
/// that shows the next one.
class MessageBar : public TintedFrame {
    Q_OBJECT

public:
    explicit MessageBar(QWidget* parent = nullptr);

    enum class Kind {
        Problem,
        Notice,
        Reminder, ///< a notice that waits behind what is shown already
        Decision  ///< a reminder of what only the user can settle, which looks as a problem does
    };

    /// A button that offers to do something about it.
    struct Remedy {
        QString text;
        std::function<void()> action; ///< called after the message has been closed
    };

    /// Takes the place of the message about the same topic.
    /// \param topic to be passed to Close
    void Show(const QString& topic, const QString& title, const QString& detail, const QVector<Remedy>& remedies = {},
              Kind kind = Kind::Problem);

    /// Gives the message that is shown technical details, which the user sees on request. Empty is none.
    void SetDetails(const QString& newDetails);

    /// Tells what the message that is shown is about, for Mended.
    /// \param subject the id of a document
    void SetSubject(const QString& subject);

    /// Closes the message about that topic, if there is one.
    void Close(const QString& topic);

    /// The same if that is its subject, of which it is no longer true.
    void Mended(const QString& topic, const QString& subject);

    /// Whether there is a message about that topic, shown or waiting.
    bool Has(const QString& topic) const;

signals:
    /// A message is closed that had the keyboard.
    void KeyboardLeft();

protected:
    void changeEvent(QEvent* event) override;

private:
    struct Message {
        QString topic;
        QString text;
        QString details;
        QVector<Remedy> remedies;
        Kind kind = Kind::Problem;
        QString subject = {};
    };

    std::vector<Message>::iterator Find(const QString& topic);
    void Take(const QString& topic);
    void ShowCurrent();
    static bool Waits(Kind kind);
    void ShowKind();
    void ShowDetails(const QString& newDetails);

    std::vector<Message> messages;
    std::size_t current = 0; ///< the one that is shown, if there is any
    QLabel* const icon;
    QLabel* const text;
    QLabel* const details;
    QToolButton* const showDetails;
    QHBoxLayout* const buttonRow;
    QPushButton* const next;
    QToolButton* const close;
    QVector<QPushButton*> buttons;
};

} // namespace Norlis::Window
