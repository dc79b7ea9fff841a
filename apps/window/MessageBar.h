#pragma once

#include <QFrame>
#include <QVector>

#include <functional>

class QHBoxLayout;
class QLabel;
class QPushButton;
class QToolButton;

namespace Norlis::Window {

// What a message can be about.
namespace Topic {
const auto files = QStringLiteral("files");
const auto edited = QStringLiteral("edited");
const auto fetched = QStringLiteral("fetched");
const auto left = QStringLiteral("left");
const auto list = QStringLiteral("list");
const auto loss = QStringLiteral("loss");
const auto removal = QStringLiteral("removal");
const auto save = QStringLiteral("save");
const auto signIn = QStringLiteral("signIn");
const auto undo = QStringLiteral("undo");
} // namespace Topic

/// Shows one problem or notice above what it concerns, and offers remedies. It takes no focus and stays until it is
/// closed or until what failed succeeds.
class MessageBar : public QFrame {
    Q_OBJECT

public:
    explicit MessageBar(QWidget* parent = nullptr);

    enum class Kind { Problem, Notice };

    /// A button that offers to do something about it.
    struct Remedy {
        QString text;
        std::function<void()> action; ///< called after the message has been closed
    };

    /// Replaces the current message.
    /// \param topic to be passed to Close
    void Show(const QString& topic, const QString& title, const QString& detail, const QVector<Remedy>& remedies = {},
              Kind kind = Kind::Problem);

    /// Gives the message that is shown technical details, which the user sees on request. Empty is none.
    void SetDetails(const QString& newDetails);

    /// Closes the message if it is about that topic.
    void Close(const QString& topic);

    /// What the message is about; empty when there is none.
    QString Shown() const;

signals:
    /// A message is closed that had the keyboard.
    void KeyboardLeft();

private:
    QString topic;
    QLabel* const icon;
    QLabel* const text;
    QLabel* const details;
    QToolButton* const showDetails;
    QHBoxLayout* const buttonRow;
    QVector<QPushButton*> buttons;
};

} // namespace Norlis::Window
