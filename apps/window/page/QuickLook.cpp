#include "QuickLook.h"

#include <apps/window/list/DocumentsView.h>
#include <apps/window/pictures/PageView.h>
#include <apps/window/texts/ServiceTexts.h>
#include <apps/window/texts/Texts.h>
#include <apps/window/widgets/AccessibleParts.h>
#include <apps/window/widgets/ElidedLabel.h>
#include <apps/window/widgets/Glyphs.h>
#include <apps/window/widgets/TintedFrame.h>
#include <host/CloudDocumentsModel.h>

#include <QApplication>
#include <QGridLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QPushButton>
#include <QShortcut>
#include <QToolButton>

#include <cstdlib>

namespace Norlis::Window {

using Host::CloudProblem;
using Host::CloudSession;
using Model = Host::CloudDocumentsModel;

namespace {

constexpr qreal sheetAspectRatio = 1.1; // of width to height, for upright pages
constexpr int sheetLetters = 60;        // at least, side by side: names are long
constexpr int wheelStep = 120;          // of one notch
constexpr int loadingInterval = 500;    // milliseconds; most pages are there before
constexpr int linesOfArrow = 3;         // that an arrow key moves a large page by

QToolButton* MakeButton(const QString& objectName, Glyph glyph, const QString& tip, const QKeySequence& keys = {})
{
    const auto button = new QToolButton;
    button->setObjectName(objectName);
    button->setIcon(GlyphIcon(glyph));
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    button->setAccessibleName(tip);
    button->setToolTip(keys.isEmpty() ? tip : tip + " (" + keys.toString(QKeySequence::NativeText) + ')');
    return button;
}

void Announce(QLabel& label, const QString& text)
{
    if (label.text() == text) {
        return;
    }
    label.setText(text);
    label.setAccessibleName(text);
    if (!text.isEmpty()) {
        ReadAloud(label);
    }
}

} // namespace

QuickLook::QuickLook(CloudSession& session, DocumentsView& view, QWidget& page)
    : QFrame(&page),
      session(session),
      view(view),
      page(page),
      sheet(new QFrame),
      badge(new QLabel),
      name(new ElidedLabel(Qt::ElideMiddle)),
      state(new ElidedLabel),
      pages(new PageView(session)),
      picture(&pages->Picture()),
      previousPage(MakeButton("previousPage", Glyph::ChevronUp, tr("Previous Page"), QKeySequence::MoveToPreviousPage)),
      nextPage(MakeButton("nextPage", Glyph::ChevronDown, tr("Next Page"), QKeySequence::MoveToNextPage)),
      zoomOut(MakeButton("quickLookZoomOut", Glyph::ZoomOut, tr("Zoom Out"), QKeySequence("Ctrl+-"))),
      zoomIn(MakeButton("quickLookZoomIn", Glyph::ZoomIn, tr("Zoom In"), QKeySequence("Ctrl++"))),
      zoom(new QLabel),
      pageNumber(new QLabel),
      help(new TintedFrame),
      notice(new QLabel),
      fetch(new QPushButton(GlyphIcon(Glyph::Download), tr("Download")))
{
    SetAccessibleRole(*this, QAccessible::Dialog);
    SetAccessibleRole(*pageNumber, QAccessible::Notification);
    SetAccessibleRole(*notice, QAccessible::Notification);
    setObjectName("quickLook");
    setFocusPolicy(Qt::StrongFocus);
    Arrange();
    ConnectKeys();
    ConnectSession();
    page.installEventFilter(this);
    Leave();
}

void QuickLook::Arrange()
{
    const int gap = fontMetrics().height() / 2;
    sheet->setObjectName("quickLookSheet");
    sheet->setFrameShape(StyledPanel);
    sheet->setAutoFillBackground(true);
    QFont bold = font();
    bold.setBold(true);
    name->setFont(bold);
    name->setObjectName("quickLookName");
    state->setObjectName("quickLookState");
    pageNumber->setObjectName("pageNumber");
    notice->setObjectName("quickLookNotice");
    notice->setTextFormat(Qt::PlainText);
    notice->setWordWrap(true);
    notice->setAlignment(Qt::AlignCenter);
    fetch->setObjectName("quickLookDownload");
    fetch->setAutoDefault(true);
    const auto previous = MakeButton("previousDocument", isRightToLeft() ? Glyph::ChevronRight : Glyph::ChevronLeft,
                                     tr("Previous Document"));
    const auto next =
        MakeButton("nextDocument", isRightToLeft() ? Glyph::ChevronLeft : Glyph::ChevronRight, tr("Next Document"));
    for (QToolButton* const button : {previous, next}) {
        button->setIconSize(button->iconSize() * 2);
    }
    const auto open = MakeButton("quickLookOpen", Glyph::Open, tr("Open the Document"), QKeySequence(Qt::Key_Return));
    const auto close =
        MakeButton("quickLookClose", Glyph::Cancel, tr("Close Quick Look"), QKeySequence(Qt::Key_Escape));

    const auto head = new QHBoxLayout;
    head->addWidget(badge);
    const auto titles = new QVBoxLayout;
    titles->setSpacing(0);
    titles->addWidget(name);
    titles->addWidget(state);
    head->addLayout(titles, 1);
    head->addWidget(open);
    head->addWidget(close);
    const auto helpLayout = new QVBoxLayout(help);
    helpLayout->addWidget(notice);
    helpLayout->addWidget(fetch, 0, Qt::AlignHCenter);
    const auto middle = new QGridLayout;
    middle->setColumnStretch(1, 1);
    middle->addWidget(previous, 0, 0);
    middle->addWidget(pages, 0, 1);
    middle->addWidget(help, 0, 1, Qt::AlignBottom); // over the page, which keeps its size
    middle->addWidget(next, 0, 2);
    const auto turning = new QHBoxLayout;
    turning->addWidget(previousPage);
    turning->addWidget(pageNumber);
    turning->addWidget(nextPage);
    const auto zooming = new QHBoxLayout;
    zooming->addStretch();
    zoom->setObjectName("quickLookZoom");
    zoom->setMinimumWidth(zoom->fontMetrics().horizontalAdvance(tr("%1 %").arg(888)));
    zoom->setAlignment(Qt::AlignCenter);
    zooming->addWidget(zoom);
    zooming->addWidget(zoomOut);
    zooming->addWidget(zoomIn);
    const auto foot = new QGridLayout; // whose sides are as wide, so that its middle is that of the page
    foot->setColumnStretch(0, 1);
    foot->setColumnStretch(2, 1);
    foot->setColumnMinimumWidth(0, zooming->sizeHint().width());
    foot->addLayout(turning, 0, 1);
    foot->addLayout(zooming, 0, 2);
    const auto layout = new QVBoxLayout(sheet);
    layout->setContentsMargins(gap, gap, gap, gap);
    layout->setSpacing(gap);
    layout->addLayout(head);
    layout->addLayout(middle, 1);
    layout->addLayout(foot);
    const auto outer = new QHBoxLayout(this);
    outer->addWidget(sheet);

    connect(previous, &QToolButton::clicked, this, [this] { MoveTo(isRightToLeft() ? Qt::Key_Right : Qt::Key_Left); });
    connect(next, &QToolButton::clicked, this, [this] { MoveTo(isRightToLeft() ? Qt::Key_Left : Qt::Key_Right); });
    connect(previousPage, &QToolButton::clicked, this, [this] { TurnTo(number - 1); });
    connect(nextPage, &QToolButton::clicked, this, [this] { TurnTo(number + 1); });
    connect(zoomOut, &QToolButton::clicked, this, [this] { pages->ZoomBy(-1); });
    connect(zoomIn, &QToolButton::clicked, this, [this] { pages->ZoomBy(1); });
    connect(pages, &PageView::ZoomChanged, this, [this] {
        zoom->setText(pages->CanZoomOut() ? tr("%1 %").arg(qRound(100 * pages->Zoom())) : QString());
        zoomOut->setEnabled(pages->CanZoomOut());
        zoomIn->setEnabled(pages->CanZoomIn());
        Fit();
        emit ZoomChanged();
    });
    connect(open, &QToolButton::clicked, this, [this] { emit OpenRequested(id); });
    connect(close, &QToolButton::clicked, this, &QuickLook::Close);
    connect(fetch, &QPushButton::clicked, this, [this] {
        isFetching = true;
        fetched = 0;
        failure.clear();
        setFocus();
        UpdatePage();
        emit FetchRequested(id);
    });
}

void QuickLook::ConnectKeys()
{
    // Shortcuts, because buttons would take the arrows for themselves.
    const auto on = [this](const QKeySequence& keys, const std::function<void()>& action) {
        const auto shortcut = new QShortcut(keys, this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
        connect(shortcut, &QShortcut::activated, this, action);
    };
    for (const auto arrow : {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down}) {
        on(QKeySequence(arrow), [this, arrow] { GoTo(arrow); });
    }
    on(QKeySequence(Qt::Key_PageUp), [this] { Read(false); });
    on(QKeySequence(Qt::Key_PageDown), [this] { Read(true); });
    on(QKeySequence(Qt::Key_Escape), [this] { Close(); });
    connect(qApp, &QApplication::focusChanged, this, [this](const QWidget*, const QWidget* now) {
        if (isVisible() && now && now != this && page.isAncestorOf(now) && !isAncestorOf(now)) {
            Leave(); // another part of the page wants the keyboard: the search, for instance
        }
    });
}

void QuickLook::ConnectSession()
{
    connect(picture, &PagePicture::Settled, this, [this] {
        if (number > 1 && picture->IsHere() && picture->PageCount() == 0) {
            TurnTo(1); // it has become another document
        }
        UpdatePage();
    });
    loading.setSingleShot(true);
    loading.setInterval(loadingInterval);
    connect(&loading, &QTimer::timeout, this, &QuickLook::UpdatePage);
    update.setSingleShot(true);
    connect(&update, &QTimer::timeout, this, &QuickLook::Update);
    const auto updateSoon = qOverload<>(&QTimer::start);
    connect(&view, &DocumentsView::SelectionChanged, &update, updateSoon);
    connect(view.selectionModel(), &QItemSelectionModel::currentChanged, &update, updateSoon);
    connect(view.model(), &QAbstractItemModel::dataChanged, &update, updateSoon);
    connect(&session, &CloudSession::ConnectionChanged, &update, updateSoon);
    const auto endFetch = [this](const QString& ended, const QString& reason) {
        if (ended == id && isFetching) {
            isFetching = false;
            failure = reason;
            update.start();
        }
    };
    connect(&session, &CloudSession::DownloadProgress, this, [this](const QString& fetching, int percent) {
        if (fetching == id) {
            fetched = percent;
            UpdatePage();
        }
    });
    connect(&session, &CloudSession::DocumentDownloaded, this,
            [endFetch](const QString& ended) { endFetch(ended, {}); });
    connect(&session, &CloudSession::DownloadCanceled, this, [endFetch](const QString& ended) { endFetch(ended, {}); });
    connect(&session, &CloudSession::Failed, this, [endFetch](const CloudProblem& problem) {
        if (problem.request == CloudProblem::Request::Download) {
            endFetch(problem.subject, ProblemDetail(problem));
        }
    });
}

QVector<QPair<QString, QList<QKeySequence>>> QuickLook::Keys()
{
    return {
        {tr("Close Quick Look"), {Qt::Key_Space, Qt::Key_Escape}},
        {tr("Open the document"), {Qt::Key_Return}},
        {tr("Next or Previous Document, Over a Large Page"), {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down}},
        {tr("Previous Page"), {QKeySequence::MoveToPreviousPage}},
        {tr("Next Page"), {QKeySequence::MoveToNextPage}},
        {tr("Zoom In"), {QString("Ctrl++")}},
        {tr("Zoom Out"), {QString("Ctrl+-")}},
        {tr("Whole Page"), {QString("Ctrl+0")}}};
}

void QuickLook::Open()
{
    if (!view.selectionModel()->hasSelection()) {
        view.setCurrentIndex(view.currentIndex()); // selects it
    }
    if (!view.selectionModel()->isSelected(view.currentIndex())) {
        view.selectionModel()->setCurrentIndex(view.selectionModel()->selectedIndexes().value(0),
                                               QItemSelectionModel::NoUpdate);
    }
    id.clear();
    Fit();
    show();
    raise();
    Update(); // before screen readers are told of it
    setFocus();
}

void QuickLook::Close()
{
    Leave();
    view.setFocus();
}

void QuickLook::Leave()
{
    hide();
    help->hide(); // these are read aloud when they are shown
    pageNumber->hide();
    id.clear();
    picture->Show({}); // it may be large, or still under way
    emit ZoomChanged();
}

PageView& QuickLook::Pages() const
{
    return *pages;
}

void QuickLook::MoveTo(Qt::Key arrow)
{
    view.SelectNeighbour(arrow);
    Update();
}

void QuickLook::GoTo(Qt::Key arrow)
{
    const bool isAcross = arrow == Qt::Key_Left || arrow == Qt::Key_Right;
    if (!pages->IsLarger(isAcross ? Qt::Horizontal : Qt::Vertical)) {
        MoveTo(arrow);
        return;
    }
    const int way = linesOfArrow * fontMetrics().height() * (arrow == Qt::Key_Left || arrow == Qt::Key_Up ? -1 : 1);
    pages->MoveBy(isAcross ? QPoint(way, 0) : QPoint(0, way));
}

void QuickLook::Read(bool isForward)
{
    const int height = pages->viewport()->height() - linesOfArrow * fontMetrics().height(); // to find where one was
    if (!pages->MoveBy({0, isForward ? height : -height})) {
        TurnTo(isForward ? number + 1 : number - 1);
    }
}

void QuickLook::TurnTo(int wanted)
{
    const bool isThere = wanted == 1 || wanted <= (picture->IsHere() ? picture->PageCount() : 2);
    if (wanted < 1 || wanted == number || !isThere) {
        return;
    }
    number = wanted;
    Update();
    pages->MoveToTop();
    if (fetch->isVisible()) {
        fetch->setFocus(); // the next thing to do
    } else if (!focusWidget()) {
        setFocus();
    }
}

void QuickLook::Update()
{
    if (!isVisible()) {
        return;
    }
    const auto index = view.currentIndex();
    if (!index.isValid()) {
        Close();
        return;
    }
    if (!view.selectionModel()->hasSelection()) { // what was selected has gone
        view.selectionModel()->select(index, QItemSelectionModel::ClearAndSelect);
    }
    const QString current = index.data(Model::IdRole).toString();
    const bool wasLoading = current == id && !picture->IsSettled();
    if (current != id) {
        id = current;
        number = 1;
        isFetching = false;
        failure.clear();
        pages->Fit();
    }
    picture->Show(index, number);
    if (!wasLoading) {
        loading.start();
    }
    pages->Update();
    const int documentState = index.data(Model::StateRole).toInt();
    const int edge = fontMetrics().height() * 3 / 2;
    QPixmap disc(QSize(edge, edge) * devicePixelRatioF());
    disc.setDevicePixelRatio(devicePixelRatioF());
    disc.fill(Qt::transparent);
    QPainter painter(&disc);
    PaintBadge(painter, QRect(0, 0, edge, edge), documentState, palette());
    painter.end();
    badge->setPixmap(disc);
    name->setText(index.data(Model::NameRole).toString());
    name->setToolTip(ToolTipText({name->text()}));
    const QString version = VersionText(documentState, picture->IsHere());
    state->setText(StateText(documentState) + (version.isEmpty() ? QString() : " · " + version));
    setAccessibleName(tr("Quick look: %1, %2").arg(name->text(), state->text()));
    UpdatePage();
}

QString QuickLook::Notice() const
{
    if (isFetching) {
        return tr("Downloading… %1 %").arg(fetched);
    }
    if (number > 1 && !picture->IsHere()) {
        return failure.isEmpty() ? tr("To show the pages after the first one, the document has to be downloaded.")
                                 : failure;
    }
    const QString reason = picture->Reason();
    if (!reason.isEmpty() && !picture->IsHere() && !session.IsSignedIn()) {
        return tr("The cloud cannot be reached at the moment.");
    }
    if (reason.isEmpty() && !picture->IsSettled() && !loading.isActive()) {
        return tr("Loading…");
    }
    return reason.isEmpty() ? QString() : tr("The page cannot be shown: %1.").arg(InUsersLanguage(reason));
}

void QuickLook::UpdatePage()
{
    if (!isVisible()) {
        return;
    }
    const int count = picture->PageCount();
    previousPage->setEnabled(number > 1);
    nextPage->setEnabled(picture->IsHere() ? number < count : number == 1);
    const bool isToBeFetched = number > 1 && !picture->IsHere() && !isFetching;
    if (!isToBeFetched && fetch->hasFocus()) {
        setFocus(); // otherwise the next button would have it
    }
    fetch->setVisible(isToBeFetched);
    if (isFetching && fetched > 0) {
        notice->setText(Notice()); // which nobody wants to hear a hundred times
    } else {
        Announce(*notice, Notice());
    }
    help->setVisible(!notice->text().isEmpty());
    Announce(*pageNumber, count > 0 ? tr("Page %1 of %2").arg(number).arg(count) : tr("Page %1").arg(number));
    pageNumber->show();
}

bool QuickLook::eventFilter(QObject*, QEvent* event)
{
    if (event->type() == QEvent::Resize) {
        Fit();
    }
    return false;
}

void QuickLook::Fit()
{
    setGeometry(page.rect());
    const int margin = qMin(page.width(), page.height()) / 24;
    const int height = page.height() - 2 * margin;
    const int usual = qMax(qRound(height * sheetAspectRatio), sheetLetters * fontMetrics().averageCharWidth());
    const int besidePage = sheet->width() - pages->width();
    const int width = qMin(page.width() - 2 * margin, qMax(usual, pages->WantedWidth() + besidePage));
    const int side = (page.width() - width) / 2;
    layout()->setContentsMargins(side, margin, side, margin);
    layout()->activate(); // the page stays under the mouse
    sheet->layout()->activate();
}

bool QuickLook::focusNextPrevChild(bool next)
{
    QList<QWidget*> stops = {this};
    for (QWidget* each = nextInFocusChain(); each != this; each = each->nextInFocusChain()) {
        if (isAncestorOf(each) && each->isVisible() && each->isEnabled() && (each->focusPolicy() & Qt::TabFocus) != 0) {
            stops.append(each);
        }
    }
    const int current = qMax(0, stops.indexOf(QApplication::focusWidget()));
    const int target = (current + (next ? 1 : stops.size() - 1)) % stops.size();
    stops[target]->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

void QuickLook::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Space:
        if (!event->isAutoRepeat()) { // of the press that has opened it
            Close();
        }
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        emit OpenRequested(id);
        break;
    default:
        QFrame::keyPressEvent(event);
    }
}

void QuickLook::mousePressEvent(QMouseEvent* event)
{
    if (!sheet->geometry().contains(event->pos())) {
        Close();
    }
}

void QuickLook::wheelEvent(QWheelEvent* event)
{
    if (event->modifiers() & Qt::ControlModifier) {
        return; // beside the page
    }
    turned += event->angleDelta().y();
    for (; std::abs(turned) >= wheelStep; turned -= turned > 0 ? wheelStep : -wheelStep) {
        TurnTo(turned > 0 ? number - 1 : number + 1);
    }
    event->accept();
}

void QuickLook::paintEvent(QPaintEvent*)
{
    const QColor shade(0, 0, 0, 120);
    QPainter(this).fillRect(rect(), shade);
}

} // namespace Norlis::Window
