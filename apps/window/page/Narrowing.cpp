#include "Narrowing.h"

#include <apps/window/list/DocumentsFilter.h>
#include <apps/window/list/DocumentsView.h>
#include <apps/window/list/FilterChips.h>
#include <apps/window/widgets/SearchField.h>

#include <QShortcut>

#include <utility>

namespace Norlis::Window {

Narrowing::Narrowing(DocumentsFilter& filter, DocumentsView& view, SearchField& search, FilterChips& chips)
    : filter(filter),
      view(view),
      search(search),
      chips(chips)
{
    connect(&search, &QLineEdit::textChanged, this, &Narrowing::OnSearch);
    connect(&search, &QLineEdit::returnPressed, this, &Narrowing::GoToFound);
    const auto down = new QShortcut(Qt::Key_Down, &search, nullptr, nullptr, Qt::WidgetShortcut);
    connect(down, &QShortcut::activated, this, &Narrowing::GoToFound);
    connect(&search, &SearchField::Left, &view, qOverload<>(&QWidget::setFocus));
    connect(&chips, &FilterChips::ChosenChanged, this, [this] {
        this->view.clearSelection();
        this->filter.Show(this->chips.Chosen());
        Apply();
    });
}

void Narrowing::ShowAll()
{
    search.clear();
    chips.Choose(DocumentsFilter::Kind::All);
}

QString Narrowing::Explanation() const
{
    QStringList reasons = {chips.Explanation()};
    if (!search.text().isEmpty()) {
        reasons.append(tr("You searched for “%1”.").arg(search.text()));
    }
    reasons.removeAll({});
    return reasons.join('\n');
}

void Narrowing::OnSearch(const QString& text)
{
    if (!text.isEmpty() && before.isEmpty()) {
        before = view.SelectedIds();
    }
    if (!text.isEmpty()) {
        view.clearSelection(); // what follows is about what is found
    }
    filter.Search(text);
    chips.Count();
    const QStringList selected = text.isEmpty() ? std::exchange(before, {}) : QStringList();
    if (!selected.isEmpty() && view.SelectedIds().isEmpty()) {
        view.Select(selected);
    }
    Apply();
}

void Narrowing::GoToFound()
{
    view.setFocus();
    if (view.SelectedIds().isEmpty()) {
        view.setCurrentIndex(filter.index(0, 0));
    }
}

void Narrowing::Apply()
{
    const bool isWhole = search.text().isEmpty() && chips.Chosen() == DocumentsFilter::Kind::All;
    if (isWhole && view.currentIndex().isValid()) {
        view.scrollTo(view.currentIndex());
    } else {
        view.scrollToTop();
    }
    emit Changed();
}

} // namespace Norlis::Window
