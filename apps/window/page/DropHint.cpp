#include "DropHint.h"

#include <apps/window/commands/CopiedDocuments.h>

#include <QDropEvent>
#include <QFileInfo>
#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>

namespace Norlis::Window {

namespace {

QPoint PlaceOf(const QDropEvent& event)
{
#if QT_VERSION_MAJOR < 6
    return event.pos();
#else
    return event.position().toPoint();
#endif
}

} // namespace

DropHint::DropHint(QWidget& target, QWidget& covered) : QFrame(&covered), target(target), text(new QLabel)
{
    target.setAcceptDrops(true);
    target.installEventFilter(this);
    setObjectName("dropHint");
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAutoFillBackground(true);
    setFrameShape(Box);
    setLineWidth(fontMetrics().height() / 6);
    QFont large = font();
    large.setPointSizeF(large.pointSizeF() * 1.5);
    text->setFont(large);
    text->setWordWrap(true);
    (new QVBoxLayout(this))->addWidget(text);
    const int margin = 2 * fontMetrics().height();
    text->setContentsMargins(margin, margin, margin, margin);
    hide();
}

bool DropHint::eventFilter(QObject*, QEvent* event)
{
    const auto action = [this] { return isUseful ? Qt::CopyAction : Qt::IgnoreAction; };
    switch (event->type()) {
    case QEvent::DragEnter:
        OnEntered(static_cast<QDragEnterEvent&>(*event));
        return true;
    case QEvent::DragMove: {
        auto& move = static_cast<QDragMoveEvent&>(*event);
        MakeRoom(move);
        move.setDropAction(action());
        move.accept();
        return true;
    }
    case QEvent::DragLeave:
        hide();
        return true;
    case QEvent::Drop: {
        auto& drop = static_cast<QDropEvent&>(*event);
        hide();
        drop.setDropAction(Qt::CopyAction);
        drop.accept();
        emit Dropped(LocalPaths(drop.mimeData()));
        return true;
    }
    default:
        return false;
    }
}

void DropHint::OnEntered(QDragEnterEvent& event)
{
    const QStringList paths = LocalPaths(event.mimeData());
    if (paths.isEmpty() || event.source()) { // which is the view when documents are dragged to another program
        event.ignore();
        return;
    }
    Show(paths);
    MakeRoom(event);
    event.setDropAction(isUseful ? Qt::CopyAction : Qt::IgnoreAction);
    event.accept(); // otherwise nobody would tell when they have left
}

void DropHint::MakeRoom(const QDropEvent& event)
{
    const bool isAbove = mapFrom(&target, PlaceOf(event)).y() < rect().center().y();
    text->setAlignment(Qt::AlignHCenter | (isAbove ? Qt::AlignBottom : Qt::AlignTop));
}

void DropHint::Show(const QStringList& paths)
{
    // By name alone: the files are read when they are dropped.
    const auto isFolder = [](const QString& path) { return QFileInfo(path).isDir(); };
    const auto isDocument = [](const QString& path) { return path.endsWith(".pdf", Qt::CaseInsensitive); };
    const bool isAnyFolder = std::any_of(paths.begin(), paths.end(), isFolder);
    const auto documents = static_cast<int>(std::count_if(paths.begin(), paths.end(), isDocument));
    isUseful = isAnyFolder || documents > 0;
    text->setText(isAnyFolder     ? tr("Drop to upload the documents in the folder")
                  : documents > 0 ? tr("Drop to upload %n document(s)", nullptr, documents)
                                  : tr("Only PDF documents can be uploaded"));

    QPalette colors = parentWidget()->palette();
    QColor background = colors.color(QPalette::Base);
    background.setAlphaF(0.93);
    colors.setColor(QPalette::Window, background);
    colors.setColor(QPalette::WindowText,
                    isUseful ? colors.color(QPalette::Highlight) : colors.color(QPalette::Disabled, QPalette::Text));
    setPalette(colors);
    colors.setColor(QPalette::WindowText,
                    parentWidget()->palette().color(isUseful ? QPalette::Normal : QPalette::Disabled, QPalette::Text));
    text->setPalette(colors);
    setGeometry(parentWidget()->rect());
    raise();
    show();
}

} // namespace Norlis::Window
