#include "FilterChips.h"

#include <apps/window/widgets/AccessibleParts.h>
#include <apps/window/widgets/Contrast.h>
#include <host/CloudDocumentsModel.h>

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QPainter>
#include <QPushButton>
#include <QStyle>

#include <array>

namespace Norlis::Window {

using Kind = DocumentsFilter::Kind;
using Model = Host::CloudDocumentsModel;

namespace {

constexpr int countInterval = 300; // milliseconds
constexpr qreal seen = 3;          // contrast of what is no text
constexpr std::array<Kind, 4> kinds = {Kind::All, Kind::NotHere, Kind::Changed, Kind::InConflict};

/// A round button that stays down.
class Chip : public QPushButton {
public:
    using QPushButton::QPushButton;

    QSize sizeHint() const override
    {
        const int line = fontMetrics().height();
        return {fontMetrics().horizontalAdvance(text()) + line * 3 / 2, line * 3 / 2};
    }

    QSize minimumSizeHint() const override
    {
        return sizeHint();
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const bool isFilled = isChecked() || isDown();
        QColor rim = palette().color(QPalette::WindowText);
        rim.setAlphaF(hasFocus() ? 1 : underMouse() ? 0.75 : 0.55);
        const QColor filling = SelectionColor(palette());
        const qreal thickness = hasFocus() ? 2 : 1;
        const bool isRimmed = !isFilled || hasFocus() || Contrast(filling, palette().color(QPalette::Window)) < seen;
        painter.setPen(QPen(isRimmed ? rim : filling, thickness));
        painter.setBrush(isFilled ? QBrush(filling) : QBrush(Qt::NoBrush));
        const qreal half = thickness / 2; // the rim has whole pixels
        const QRectF area = QRectF(rect()).adjusted(half, half, -half, -half);
        painter.drawRoundedRect(area, area.height() / 2, area.height() / 2);
        style()->drawItemText(&painter, rect(), Qt::AlignCenter, palette(), isEnabled(), text(),
                              isFilled ? QPalette::HighlightedText : QPalette::WindowText);
    }
};

} // namespace

FilterChips::FilterChips(const QAbstractItemModel& documents, const DocumentsFilter& filter, QWidget* parent)
    : QWidget(parent),
      documents(documents),
      filter(filter),
      chips(new QButtonGroup(this))
{
    setObjectName("filterChips");
    setAccessibleName(tr("Shown documents"));
    const auto layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    for (const Kind kind : kinds) {
        const auto chip = new Chip;
        chip->setCheckable(true);
        SetAccessibleRole(*chip, QAccessible::RadioButton);
        chips->addButton(chip, static_cast<int>(kind));
        layout->addWidget(chip);
    }
    chips->button(static_cast<int>(Kind::NotHere))->setToolTip(tr("Documents without a copy on this computer"));
    chips->button(static_cast<int>(Kind::Changed))
        ->setToolTip(tr("Documents that were changed here or in the cloud since both were the same"));
    chips->button(static_cast<int>(Kind::InConflict))
        ->setToolTip(tr("Documents that were changed both here and in the cloud"));
    Choose(Kind::All);
    Count();
    connect(chips, qOverload<QAbstractButton*, bool>(&QButtonGroup::buttonToggled), this,
            [this](QAbstractButton*, bool isChosen) {
                if (isChosen) {
                    emit ChosenChanged();
                }
            });
    counting.setSingleShot(true);
    counting.setInterval(countInterval);
    connect(&counting, &QTimer::timeout, this, &FilterChips::Count);
    const auto countSoon = [this] {
        if (!counting.isActive()) { // however long the changes go on
            counting.start();
        }
    };
    for (const auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved}) {
        connect(&documents, signal, this, countSoon);
    }
    connect(&documents, &QAbstractItemModel::dataChanged, this, countSoon);
}

Kind FilterChips::Chosen() const
{
    return static_cast<Kind>(chips->checkedId());
}

void FilterChips::Choose(Kind kind)
{
    chips->button(static_cast<int>(kind))->setChecked(true);
}

QString FilterChips::Explanation() const
{
    switch (Chosen()) {
    case Kind::All:
        break;
    case Kind::NotHere:
        return tr("Only documents without a copy on this computer are shown.");
    case Kind::Changed:
        return tr("Only changed documents are shown.");
    case Kind::InConflict:
        return tr("Only documents that were changed both here and in the cloud are shown.");
    }
    return {};
}

void FilterChips::Count()
{
    std::array<int, kinds.size()> counts = {};
    for (int row = 0; row < documents.rowCount(); ++row) {
        const auto index = documents.index(row, 0);
        const bool isCounted = !index.data(Model::HiddenRole).toBool() && filter.IsFound(index);
        for (std::size_t kind = 0; kind < kinds.size() && isCounted; ++kind) {
            counts.at(kind) += DocumentsFilter::IsOfKind(index.data(Model::StateRole).toInt(), kinds.at(kind)) ? 1 : 0;
        }
    }
    const std::array<QString, kinds.size()> texts = {tr("All"), tr("Not Here"), tr("Changed"), tr("Conflicts")};
    for (std::size_t kind = 0; kind < kinds.size(); ++kind) {
        const QString number = counts.at(kind) == 0 ? QString() : ' ' + QString::number(counts.at(kind));
        chips->button(static_cast<int>(kind))->setText(texts.at(kind) + number);
    }
}

} // namespace Norlis::Window
