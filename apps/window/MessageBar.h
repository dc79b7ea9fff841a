#pragma once

#include <QFrame>
#include <QVector>

#include <functional>

class QHBoxLayout;
class QLabel;
class QPushButton;

namespace Norlis::Window {

// What the message bar can be about.
namespace Topic {
const auto files = QStringLiteral("files");
const auto list = QStringLiteral("list");
const auto removal = QStringLiteral("removal");
const auto save = QStringLiteral("save");
const auto signIn = QStringLiteral("signIn");
} // namespace Topic

/// Tells of one problem above what it concerns, and offers ways out. It takes no focus and stays until it is closed,
/// or until what failed succeeds.
class MessageBar : public QFrame {
    Q_OBJECT

public:
    explicit MessageBar(QWidget* parent = nullptr);

    /// What the user can do about it.
    struct Remedy {
        QString text;
        std::function<void()> action; ///< the message is closed before
    };

    /// Replaces the message that is shown.
    /// \param topic which Close can name
    void Show(const QString& topic, const QString& title, const QString& detail, const QVector<Remedy>& remedies = {});

    /// Closes the message of that topic; nothing happens when another one is shown.
    void Close(const QString& topic);

    /// Empty when none is shown.
    QString Topic() const;
    QString Text() const;

private:
    QString topic;
    QLabel* const text;
    QHBoxLayout* const buttonRow;
    QVector<QPushButton*> buttons;
};

} // namespace Norlis::Window
