#include "AccessibleParts.h"

#include <QAbstractButton>
#include <QAccessibleWidget>
#include <QCoreApplication>
#include <QEvent>
#include <QHeaderView>
#include <QLabel>
#include <QTimer>
#include <QVector>

namespace Norlis::Window {

namespace {

namespace Property {
constexpr auto role = "norlisAccessibleRole";
constexpr auto titles = "norlisTitles";       // of a container: the header
constexpr auto container = "norlisContainer"; // of a header
} // namespace Property

QWidget* WidgetIn(const QObject& owner, const char* property)
{
    return qobject_cast<QWidget*>(owner.property(property).value<QObject*>());
}

/// One of several buttons, of which one is down.
class Choice : public QAccessibleWidget {
public:
    explicit Choice(QAbstractButton& button) : QAccessibleWidget(&button, QAccessible::RadioButton), button(button) {}

    QString text(QAccessible::Text kind) const override
    {
        const QString own = QAccessibleWidget::text(kind);
        return kind == QAccessible::Name && own.isEmpty() ? button.text() : own;
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.checkable = true;
        state.checked = button.isChecked();
        return state;
    }

    QStringList actionNames() const override
    {
        return QStringList(toggleAction()) + QAccessibleWidget::actionNames();
    }

    void doAction(const QString& name) override
    {
        if (name == toggleAction()) {
            button.click();
        } else {
            QAccessibleWidget::doAction(name);
        }
    }

private:
    QAbstractButton& button;
};

/// The title of a column, which sorts by it.
class Title : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    Title(QHeaderView& header, int section) : header(header), section(section) {}

    bool isValid() const override
    {
        return section < header.count();
    }

    QObject* object() const override
    {
        return nullptr;
    }

    QWindow* window() const override
    {
        return parent()->window();
    }

    QAccessibleInterface* parent() const override
    {
        return QAccessible::queryAccessibleInterface(&header);
    }

    QAccessibleInterface* child(int) const override
    {
        return nullptr;
    }

    QAccessibleInterface* childAt(int, int) const override
    {
        return nullptr;
    }

    int childCount() const override
    {
        return 0;
    }

    int indexOfChild(const QAccessibleInterface*) const override
    {
        return -1;
    }

    QString text(QAccessible::Text kind) const override
    {
        if (kind == QAccessible::Name) {
            return header.model()->headerData(section, header.orientation()).toString();
        }
        if (kind != QAccessible::Description || header.sortIndicatorSection() != section) {
            return {};
        }
        return header.sortIndicatorOrder() == Qt::AscendingOrder
                   ? QCoreApplication::translate("Titles", "Sorted ascending")
                   : QCoreApplication::translate("Titles", "Sorted descending");
    }

    void setText(QAccessible::Text, const QString&) override {}

    QRect rect() const override
    {
        const QRect area(header.sectionViewportPosition(section), 0, header.sectionSize(section), header.height());
        return area.translated(header.viewport()->mapToGlobal(QPoint()));
    }

    QAccessible::Role role() const override
    {
        return QAccessible::ColumnHeader;
    }

    QAccessible::State state() const override
    {
        QAccessible::State state;
        state.invisible = !header.isVisible() || header.isSectionHidden(section);
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
    }

    QStringList actionNames() const override
    {
        return {pressAction()};
    }

    void doAction(const QString&) override
    {
        const bool isTurned =
            header.sortIndicatorSection() == section && header.sortIndicatorOrder() == Qt::AscendingOrder;
        header.setSortIndicator(section, isTurned ? Qt::DescendingOrder : Qt::AscendingOrder);
    }

    QStringList keyBindingsForAction(const QString&) const override
    {
        return {};
    }

private:
    QHeaderView& header;
    const int section;
};

/// Titles of columns, each of which is a part of its own.
class Titles : public QAccessibleWidget {
public:
    explicit Titles(QHeaderView& header) : QAccessibleWidget(&header, QAccessible::Grouping), header(header)
    {
        for (int section = 0; section < header.count(); ++section) {
            ids.append(QAccessible::registerAccessibleInterface(new Title(header, section)));
        }
    }

    QAccessibleInterface* parent() const override
    {
        return QAccessible::queryAccessibleInterface(WidgetIn(header, Property::container));
    }

    int childCount() const override
    {
        return ids.size();
    }

    QAccessibleInterface* child(int index) const override
    {
        return QAccessible::accessibleInterface(ids.value(index));
    }

    int indexOfChild(const QAccessibleInterface* part) const override
    {
        return ids.indexOf(QAccessible::uniqueId(const_cast<QAccessibleInterface*>(part)));
    }

protected:
    ~Titles() override
    {
        for (const QAccessible::Id id : qAsConst(ids)) {
            QAccessible::deleteAccessibleInterface(id);
        }
    }

private:
    QHeaderView& header;
    QVector<QAccessible::Id> ids;
};

/// Has the titles as its last part.
class Container : public QAccessibleWidget {
public:
    explicit Container(QWidget& widget) : QAccessibleWidget(&widget, QAccessible::LayeredPane) {}

    int childCount() const override
    {
        return QAccessibleWidget::childCount() + 1;
    }

    QAccessibleInterface* child(int index) const override
    {
        return index == QAccessibleWidget::childCount()
                   ? QAccessible::queryAccessibleInterface(WidgetIn(*object(), Property::titles))
                   : QAccessibleWidget::child(index);
    }

    int indexOfChild(const QAccessibleInterface* part) const override
    {
        return part && part->object() == WidgetIn(*object(), Property::titles) ? QAccessibleWidget::childCount()
                                                                               : QAccessibleWidget::indexOfChild(part);
    }
};

/// A part of some role. A label has its text as its name, as in its usual role.
class Part : public QAccessibleWidget {
public:
    using QAccessibleWidget::QAccessibleWidget;

    QString text(QAccessible::Text kind) const override
    {
        const QString known = QAccessibleWidget::text(kind);
        const auto label = qobject_cast<QLabel*>(widget());
        return kind == QAccessible::Name && known.isEmpty() && label ? label->text() : known;
    }
};

QAccessibleInterface* Make(const QString&, QObject* object)
{
    const auto widget = qobject_cast<QWidget*>(object);
    if (!widget) {
        return nullptr;
    }
    if (const auto header = qobject_cast<QHeaderView*>(widget); header && WidgetIn(*header, Property::container)) {
        return new Titles(*header);
    }
    if (WidgetIn(*widget, Property::titles)) {
        return new Container(*widget);
    }
    const QVariant role = widget->property(Property::role);
    if (!role.isValid()) {
        return nullptr;
    }
    if (role.toInt() == QAccessible::RadioButton) {
        return new Choice(*qobject_cast<QAbstractButton*>(widget));
    }
    return new Part(widget, static_cast<QAccessible::Role>(role.toInt()));
}

/// Sets a property by which Make knows a widget.
void Set(QWidget& widget, const char* property, const QVariant& value)
{
    static const bool isInstalled = (QAccessible::installFactory(Make), true);
    Q_UNUSED(isInstalled)
    widget.setProperty(property, value);
    // It may be known by what it was before.
    QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(QAccessible::queryAccessibleInterface(&widget)));
}

/// Tells of the current item after the view's own word of itself, which comes when this event has been handled.
class FocusWatch : public QObject {
public:
    explicit FocusWatch(QAbstractItemView& view) : QObject(&view), view(view)
    {
        view.installEventFilter(this);
    }

    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::FocusIn) {
            QTimer::singleShot(0, this, [this] { TellCurrentItem(view); });
        }
        return false;
    }

private:
    QAbstractItemView& view;
};

} // namespace

void SetAccessibleRole(QWidget& widget, QAccessible::Role role)
{
    Set(widget, Property::role, role);
}

void ReadAloud(QWidget& notification)
{
    if (notification.isVisible()) {
        QAccessibleEvent event(&notification, QAccessible::ObjectShow);
        QAccessible::updateAccessibility(&event);
    }
}

void TellCurrentItem(QAbstractItemView& view)
{
    if (view.hasFocus() && view.currentIndex().isValid()) {
        QAccessibleEvent event(&view, QAccessible::Focus);
        event.setChild(view.currentIndex().row());
        QAccessible::updateAccessibility(&event);
    }
}

void TellOfCurrentItem(QAbstractItemView& view)
{
    new FocusWatch(view);
}

void ShowTitles(QWidget& container, QHeaderView& header)
{
    Set(header, Property::container, QVariant::fromValue<QObject*>(&container));
    Set(container, Property::titles, QVariant::fromValue<QObject*>(&header));
}

} // namespace Norlis::Window
