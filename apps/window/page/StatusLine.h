#pragma once

#include "StorageBar.h"

#include <apps/window/widgets/TintedFrame.h>

#include <QDateTime>
#include <QTimer>

class QLabel;
class QPushButton;

namespace Norlis::Window {

/// The line at the bottom: how many documents there are, how old the list is or when the cloud is asked next, and how
/// much of the storage is used. It is tinted while it is offline.
class StatusLine : public TintedFrame {
    Q_OBJECT

public:
    struct Situation {
        int shown = 0; ///< documents that match the search
        int all = 0;
        int selected = 0;
        qint64 selectedSize = 0; ///< bytes
        int removals = 0;        ///< of documents, that have not been sent
        bool isRefreshing = false;
        bool isSigningIn = false;
        QDateTime askedAt;     ///< when that was begun
        QDateTime refreshedAt; ///< invalid when there was no list yet
        bool isOffline = false;
        QDateTime nextAttempt; ///< while it is offline; invalid while it is being attempted
    };

    explicit StatusLine(QWidget* parent = nullptr);

    /// Counts the seconds by itself while it is offline or waits for an answer.
    void Show(const Situation& newSituation);

    /// To screen readers: what is shown is less by now, or more.
    void ReadNumbersAloud();

    /// Why it is offline.
    /// \param technical for experts
    void Explain(const QString& newReason, const QString& technical);

    StorageBar& Storage();

signals:
    void TryNowChosen();

    /// What the cloud has not answered is no longer waited for.
    void StopWaitingChosen();

    /// The button goes that had the keyboard.
    void KeyboardLeft();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void Update();

    /// For an answer that is being waited for; 0 while that takes no longer than usual.
    int SecondsWithoutAnswer() const;

    /// How long a part stays where there is too little room. The end of the line may be cut, before other parts go.
    enum class Importance { Least, More, Kept, End };

    struct Part {
        QString text;
        Importance importance;
    };

    QVector<Part> Numbers() const;
    QVector<Part> OnlineParts() const;
    QVector<Part> OfflineParts() const;

    /// As many as there is room for; all are in the tool tip.
    void ShowParts(QVector<Part> parts);

    Situation situation;
    QString reason;  ///< a sentence
    QString details; ///< for experts
    QLabel* const text;
    QPushButton* const tryNow;
    QPushButton* const stopWaiting;
    StorageBar* const storage;
    QTimer countdown;
};

} // namespace Norlis::Window
