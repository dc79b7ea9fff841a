#include "DocumentsTools.h"

#include <apps/window/commands/DocumentActions.h>
#include <apps/window/list/FilterChips.h>
#include <apps/window/widgets/FittingToolBar.h>
#include <apps/window/widgets/SearchField.h>

#include <QComboBox>
#include <QVBoxLayout>

namespace Norlis::Window {

namespace {

constexpr int leastLines = 30; // of a page whose tools have texts

// Of a search beside the toolbar.
constexpr int leastLetters = 30;
constexpr int mostLetters = 60;

QBoxLayout* MakeUpper(FittingToolBar& bar, SearchField& search)
{
    const auto searching = new QHBoxLayout;
    const int margin = 2 * (search.fontMetrics().height() / 3);
    searching->setContentsMargins(margin, 0, margin, 0);
    searching->addWidget(&search);
    const auto upper = new QBoxLayout(QBoxLayout::TopToBottom);
    upper->setSpacing(0);
    upper->addWidget(&bar);
    upper->addLayout(searching, 1);
    return upper;
}

} // namespace

DocumentsTools::DocumentsTools(const DocumentActions& actions, SearchField& search, FilterChips& chips,
                               QComboBox& order)
    : bar(new FittingToolBar),
      search(search),
      upper(MakeUpper(*bar, search))
{
    bar->setAccessibleName(tr("Toolbar"));
    actions.AddTo(*bar);
    QSizePolicy policy = order.sizePolicy();
    policy.setRetainSizeWhenHidden(true); // what is below stays where it is
    order.setSizePolicy(policy);
    const int gap = fontMetrics().height() / 3;
    const auto narrowing = new QHBoxLayout;
    narrowing->setContentsMargins(2 * gap, gap, 2 * gap, gap);
    narrowing->addWidget(&chips);
    narrowing->addSpacing(2 * gap);
    narrowing->addStretch();
    narrowing->addWidget(&order);
    const auto layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(upper);
    layout->addLayout(narrowing);
}

void DocumentsTools::Fit(const QSize& page)
{
    const bool isLow = page.height() < leastLines * fontMetrics().lineSpacing();
    bar->LeaveOutTexts(isLow);
    const int letter = fontMetrics().averageCharWidth();
    const bool isBeside = page.width() >= bar->WholeWidth() + leastLetters * letter;
    upper->setDirection(!isBeside         ? QBoxLayout::TopToBottom
                        : isRightToLeft() ? QBoxLayout::RightToLeft
                                          : QBoxLayout::LeftToRight);
    search.setMaximumWidth(isBeside ? mostLetters * letter : QWIDGETSIZE_MAX);
}

} // namespace Norlis::Window
