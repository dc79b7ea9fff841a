#include "DocumentsTools.h"

#include "DocumentActions.h"
#include "FilterChips.h"
#include "FittingToolBar.h"
#include "SearchField.h"

#include <QComboBox>
#include <QVBoxLayout>

namespace Norlis::Window {

namespace {

constexpr int leastLines = 30;   // of a page whose tools have texts
constexpr int leastLetters = 90; // of a line that holds the toolbar and the search

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
    const bool isWide = page.width() > leastLetters * fontMetrics().averageCharWidth();
    bar->LeaveOutTexts(isLow);
    upper->setDirection(!(isLow && isWide) ? QBoxLayout::TopToBottom
                        : isRightToLeft()  ? QBoxLayout::RightToLeft
                                           : QBoxLayout::LeftToRight);
}

} // namespace Norlis::Window
