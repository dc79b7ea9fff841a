#pragma once

#include <QAccessible>

class QAbstractItemView;
class QHeaderView;
class QWidget;

/// What screen readers are told beyond what Qt's widgets tell by themselves.
namespace Norlis::Window {

/// Has screen readers know a widget by that role. For a RadioButton it has to be a QAbstractButton.
void SetAccessibleRole(QWidget& widget, QAccessible::Role role);

/// Has screen readers read a widget aloud that is on the screen and whose role is Notification. When it comes to be on
/// the screen, they do by themselves.
void ReadAloud(QWidget& notification);

/// Tells of the current item if the view has the keyboard, as Qt does when another item becomes it.
void TellCurrentItem(QAbstractItemView& view);

/// Tells of the current item too whenever the view is given the keyboard.
void TellOfCurrentItem(QAbstractItemView& view);

/// Lets screen readers find the titles of a view's columns, which Qt does not know as a part of a list: beside the
/// view, after what the container has in it. \param container outlives the header
void ShowTitles(QWidget& container, QHeaderView& header);

} // namespace Norlis::Window
