#pragma once

#include <QString>
#include <functional>
#include <map>
#include <utility>

#include "config/setup/model.h"

class QLabel;
class QWidget;

/// The widgets that stand for the fields of the setup model. They show what the model says and hand in what a person
/// does; they hold no rule.
class FieldWidgets {
 public:
  /// `press` is called for the buttons that leave the screen; the others go to the model.
  FieldWidgets(SetupModel& model, std::function<void(Control)> press) : model_(model), press_(std::move(press)) {}

  /// Makes the widget of a field, named as the field is. Each field is made once.
  QWidget* Make(Control control, int element, QWidget* parent);
  QWidget* Make(Control control, QWidget* parent) { return Make(control, 0, parent); }
  /// A widget made elsewhere that shows a field; only whether it is enabled and in sight is taken from the model.
  void Adopt(Control control, QWidget* widget);
  QWidget* Find(FieldId field) const;

  /// Has all widgets show the model as it is now.
  void Refresh();

 private:
  using Key = std::pair<Control, int>;

  QWidget* MakeList(FieldId field, QWidget* parent);
  QWidget* MakeText(FieldId field, QWidget* parent);
  QWidget* MakeCheck(FieldId field, QWidget* parent);
  QWidget* MakeButton(FieldId field, QWidget* parent);

  SetupModel& model_;
  std::function<void(Control)> press_;
  std::map<Key, QWidget*> widgets_;
};
