#include "DetailsPane.h"

#include <apps/common/PrintableText.h>
#include <apps/window/commands/DocumentCommands.h>
#include <apps/window/list/DocumentsView.h>
#include <apps/window/pictures/PagePicture.h>
#include <apps/window/texts/Texts.h>
#include <apps/window/widgets/Alignment.h>
#include <apps/window/widgets/ElidedLabel.h>
#include <host/CloudDocumentsModel.h>

#include <QAction>
#include <QDir>
#include <QFileInfo>
#include <QTextBoundaryFinder>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace Norlis::Window {

using Model = Host::CloudDocumentsModel;
using State = PDF::FileInfo::CloudStatus;

namespace {

constexpr int leastLinesOfPicture = 5; // in which one recognizes a page

/// Lets lines end inside of very long words, of which names often consist.
QString Breakable(const QString& text)
{
    constexpr int mostLetters = 20;
    QStringList words = text.split(' ');
    for (QString& word : words) {
        QTextBoundaryFinder letters(QTextBoundaryFinder::Grapheme, word);
        QString broken;
        for (int start = 0, end = letters.toNextBoundary(); end > 0; start = end, end = letters.toNextBoundary()) {
            broken += word.mid(start, end - start) + QChar(0x200B);
        }
        word = word.size() > mostLetters ? broken : word;
    }
    return words.join(' ');
}

void Prepare(QLabel& label)
{
    label.setTextFormat(Qt::PlainText);
    label.setAlignment(StartOf(label));
}

QString FiguresText(qint64 size, const QDateTime& date)
{
    const QString when = DateText(date);
    return when.isEmpty() ? SizeText(size) : SizeText(size) + " · " + when;
}

State StateOf(const QModelIndex& document)
{
    return static_cast<State>(document.data(Model::StateRole).toInt());
}

} // namespace

DetailsPane::DetailsPane(Host::CloudSession& session, DocumentsView& view, const DocumentActions& actions,
                         QWidget* parent)
    : QScrollArea(parent),
      session(session),
      view(view),
      actions(actions),
      picture(new PagePicture(session)),
      version(new QLabel),
      name(new QLabel)
{
    setObjectName("detailsPane");
    setAccessibleName(tr("Details"));
    setFrameShape(NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    const int gap = fontMetrics().height() / 2;
    name->setObjectName("detailsName");
    name->setWordWrap(true);
    Prepare(*name);
    const auto content = new QWidget;
    const auto layout = new QVBoxLayout(content);
    layout->setContentsMargins(2 * gap, gap, 2 * gap, gap);
    layout->setSpacing(gap / 2);
    picture->setMinimumHeight(fontMetrics().lineSpacing() * leastLinesOfPicture);
    layout->addWidget(picture, 1); // it gives way to what stands below
    version->setObjectName("detailsVersion");
    version->setWordWrap(true);
    version->setAlignment(Qt::AlignCenter);
    layout->addWidget(version);
    layout->addSpacing(gap / 2);
    layout->addWidget(name);
    state = AddLine(*layout, {}, "detailsState", new QLabel);
    state.text->setWordWrap(true);
    inCloud = AddLine(*layout, tr("In the cloud"), "detailsInCloud", new QLabel);
    here = AddLine(*layout, tr("On this computer"), "detailsHere", new QLabel);
    folder = AddLine(*layout, {}, "detailsFolder", new ElidedLabel(Qt::ElideMiddle));
    layout->addSpacing(gap / 2);
    AddButtons(*layout);
    layout->addStretch();
    setWidget(content);
    captions.append(version);
    setMinimumWidth(fontMetrics().averageCharWidth() * 28);
    MuteCaptions();
}

DetailsPane::Line DetailsPane::AddLine(QVBoxLayout& layout, const QString& caption, const QString& objectName,
                                       QLabel* text)
{
    const auto line = new QWidget;
    const auto lineLayout = new QVBoxLayout(line);
    lineLayout->setContentsMargins(0, 0, 0, 0);
    lineLayout->setSpacing(0);
    if (!caption.isEmpty()) {
        captions.append(new QLabel(caption));
        Prepare(*captions.last());
        lineLayout->addWidget(captions.last());
    }
    text->setObjectName(objectName);
    Prepare(*text);
    lineLayout->addWidget(text);
    layout.addWidget(line);
    return {line, text};
}

void DetailsPane::MuteCaptions()
{
    QPalette colors = palette();
    QColor muted = colors.color(QPalette::WindowText);
    muted.setAlphaF(0.7);
    colors.setColor(QPalette::WindowText, muted);
    for (QLabel* const caption : qAsConst(captions)) {
        caption->setPalette(colors);
    }
}

void DetailsPane::AddButtons(QVBoxLayout& layout)
{
    for (QAction* const action : {actions.open, actions.download, actions.uploadChanges, actions.resolve,
                                  actions.showInFolder, actions.remove}) {
        const auto button = new QToolButton;
        button->setDefaultAction(action);
        button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
        button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        button->setFocusPolicy(Qt::TabFocus);
        layout.addWidget(button);
        buttons.append(button);
    }
}

void DetailsPane::Fill(const Line& line, const QString& text)
{
    line.text->setText(text);
    line.line->setVisible(!text.isEmpty());
}

void DetailsPane::Update()
{
    if (!isVisible()) {
        return;
    }
    auto documents = view.selectionModel()->selectedIndexes();
    if (documents.size() == 1) {
        ShowDocument(documents.first());
    } else {
        ShowSeveral(documents);
    }
    OfferActions(documents);
}

void DetailsPane::ShowDocument(const QModelIndex& document)
{
    const QString printable = document.data(Model::NameRole).toString();
    name->setText(Breakable(printable));
    name->setAccessibleName(printable);
    picture->ShowAsListed(document);
    picture->setVisible(true);
    version->setText(VersionText(static_cast<int>(StateOf(document)), picture->IsHere()));
    version->setVisible(!version->text().isEmpty());
    const QFileInfo copy(document.data(Model::PathRole).toString());
    const bool isHere = copy.isFile();
    Fill(state, StateText(static_cast<int>(StateOf(document))));
    captions.first()->setVisible(StateOf(document) != State::OnlyInCloud); // which says it already
    SetBold(true);
    Fill(inCloud,
         FiguresText(document.data(Model::SizeRole).toLongLong(), document.data(Model::ModifiedRole).toDateTime()));
    Fill(here, isHere ? FiguresText(copy.size(), copy.lastModified()) : QString());
    const QString viewing = session.ViewingFolder(document.data(Model::IdRole).toString());
    const bool isTheUsers = isHere && !copy.filePath().startsWith(viewing);
    const QString place = isTheUsers ? Apps::Printable(QDir::toNativeSeparators(copy.path())) : QString();
    Fill(folder, place);
    folder.text->setToolTip(ToolTipText({place}));
    folder.text->setAccessibleName(tr("Folder: %1").arg(place));
}

void DetailsPane::ShowSeveral(const QModelIndexList& documents)
{
    qint64 size = 0;
    for (const auto& document : documents) {
        size += document.data(Model::SizeRole).toLongLong();
    }
    name->setText(documents.isEmpty() ? tr("Select a document to see its details.")
                                      : tr("%n documents", nullptr, documents.size()));
    name->setAccessibleName(name->text());
    captions.first()->setVisible(true);
    SetBold(!documents.isEmpty());
    picture->setVisible(false);
    version->setVisible(false);
    Fill(state, {});
    Fill(inCloud, documents.isEmpty() ? QString() : SizeText(size));
    Fill(here, {});
    Fill(folder, {});
}

void DetailsPane::SetBold(bool isName)
{
    QFont letters = font();
    letters.setBold(isName);
    name->setFont(letters);
}

void DetailsPane::OfferActions(const QModelIndexList& documents)
{
    const auto isAny = [&](std::initializer_list<State> states) {
        return std::any_of(documents.begin(), documents.end(), [&](const QModelIndex& document) {
            return std::find(states.begin(), states.end(), StateOf(document)) != states.end();
        });
    };
    const auto offer = [this](const QAction* action, bool isUseful) {
        for (QToolButton* const button : qAsConst(buttons)) {
            if (button->defaultAction() == action) {
                button->setVisible(isUseful);
            }
        }
    };
    offer(actions.open, !documents.isEmpty() && documents.size() <= DocumentCommands::maxOpened);
    offer(actions.download, isAny({State::OnlyInCloud, State::ChangedInCloud}));
    offer(actions.uploadChanges, isAny({State::ChangedLocally}));
    offer(actions.resolve, isAny({State::ChangedOnBothSides}));
    offer(actions.showInFolder, actions.showInFolder->isEnabled());
    offer(actions.remove, !documents.isEmpty());
}

void DetailsPane::showEvent(QShowEvent* event)
{
    QScrollArea::showEvent(event);
    Update();
}

void DetailsPane::resizeEvent(QResizeEvent* event)
{
    QScrollArea::resizeEvent(event);
    picture->setMaximumHeight(qRound(viewport()->width() * 1.3)); // as much as a page of paper needs
}

void DetailsPane::changeEvent(QEvent* event)
{
    QScrollArea::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        MuteCaptions();
    }
}

} // namespace Norlis::Window
