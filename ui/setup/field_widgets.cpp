#include "ui/setup/field_widgets.h"

#include <QComboBox>
#include <QElapsedTimer>
#include <QEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyle>
#include <QToolTip>
#include <algorithm>
#include <utility>

#include "config/setup/typed_text.h"
#include "platform/qt/text.h"
#include "ui/key_code.h"
#include "ui/setup/marked_check_box.h"

namespace {

/// Tells the model where the keyboard is.
class FocusEvents : public QObject {
 public:
  FocusEvents(SetupModel& model, FieldId field, QWidget* widget) : QObject(widget), model_(model), field_(field) {
    widget->installEventFilter(this);
  }

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::FocusIn) model_.TakeFocus(field_);
    if (event->type() == QEvent::FocusOut) model_.LoseFocus(field_);
    return false;
  }

 private:
  SetupModel& model_;
  FieldId field_;
};

/// A text field that takes what its row of the field table allows, typed or pasted, and says why it does not.
class TextField : public QLineEdit {
 public:
  TextField(SetupModel& model, FieldId field, QWidget* parent) : QLineEdit(parent), model_(model), field_(field) {
    connect(this, &QLineEdit::textEdited, this, [this](const QString& typed) { Take(typed); });
    connect(this, &QLineEdit::inputRejected, this, [this] { Tell("The field holds no more characters"); });
  }

 protected:
  void focusInEvent(QFocusEvent* event) override {
    QLineEdit::focusInEvent(event);
    if (!Row().selectedOnEntry) return;
    selectAll();
    selectOnRelease_ = event->reason() == Qt::MouseFocusReason;  // the click itself puts the caret somewhere
  }
  void mouseReleaseEvent(QMouseEvent* event) override {
    QLineEdit::mouseReleaseEvent(event);
    if (std::exchange(selectOnRelease_, false) && !hasSelectedText()) selectAll();
  }
  void keyPressEvent(QKeyEvent* event) override {
    const bool plain = !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
    const int code = KeyCodeOf(*event);
    if (plain && code != 0 && event->text().isEmpty() && !TakesKey(Row(), code)) return;
    QLineEdit::keyPressEvent(event);
  }

 private:
  const FieldRow& Row() const { return *model_.Fields().At(field_).row; }

  void Tell(const QString& refusal) { QToolTip::showText(mapToGlobal(QPoint(0, height())), refusal, this); }

  void Take(const QString& typed) {
    const TypedText taken = TakeTyped(Row(), ToBytes(typed));
    const QString text = ToText(taken.text);
    if (text != typed) {
      const qsizetype dropped = typed.size() - text.size();
      const int caret = cursorPosition();
      setText(text);
      setCursorPosition(caret - static_cast<int>(dropped));
    }
    if (!taken.refusal.empty()) Tell(ToText(taken.refusal));
    model_.SetText(field_, taken.text);
  }

  SetupModel& model_;
  FieldId field_;
  bool selectOnRelease_ = false;
};

/// A list that a turn of the wheel over it does not change, and in which blanks belong to the text that is typed to
/// find an item.
class ListField : public QComboBox {
 public:
  using QComboBox::QComboBox;

 protected:
  void wheelEvent(QWheelEvent* event) override { event->ignore(); }
  void keyPressEvent(QKeyEvent* event) override {
    constexpr int kTypedOnMs = 1000;
    const bool typesOn = sinceTyped_.isValid() && sinceTyped_.elapsed() < kTypedOnMs;
    if (event->text().isEmpty() || !event->text().at(0).isPrint() || (event->text() == " " && !typesOn)) {
      return QComboBox::keyPressEvent(event);
    }
    typed_ = (typesOn ? typed_ : QString()) + event->text();
    sinceTyped_.start();
    const int found = findText(typed_, Qt::MatchStartsWith);
    if (found < 0 || found == currentIndex()) return;
    setCurrentIndex(found);
    emit activated(found);
  }

 private:
  QString typed_;
  QElapsedTimer sinceTyped_;
};

void ShowList(QComboBox& list, const SetupField& field) {
  if (list.count() != static_cast<int>(field.items.size())) {
    list.clear();
    for (const std::string& item : field.items) list.addItem(ToText(item));
  }
  if (list.currentIndex() != field.value) list.setCurrentIndex(field.value);
  if (list.property("grey").toBool() == field.grey) return;
  list.setProperty("grey", field.grey);
  QPalette colours = list.palette();
  colours.setColor(QPalette::Button, field.grey ? QColor(0xE0, 0xE0, 0xE0) : QColor(Qt::white));
  list.setPalette(colours);
}

void ShowText(QLineEdit& line, const SetupField& field) {
  const QString text = ToText(field.text);
  // A full field takes no more; a file may have brought a longer text.
  const int limit = static_cast<int>(field.row->limit);
  if (limit > 0) line.setMaxLength(std::max(limit, static_cast<int>(text.size())));
  if (line.text() != text) line.setText(text);
  if (line.property("grey").toBool() == field.grey) return;
  line.setProperty("grey", field.grey);
  line.style()->unpolish(&line);  // the style sheet knows the property from the polishing
  line.style()->polish(&line);
}

/// A check box's text without the blanks that its caption begins or ends with.
QString CaptionOf(const SetupField& field) { return ToText(field.text).trimmed(); }

}  // namespace

QWidget* FieldWidgets::Make(Control control, int element, QWidget* parent) {
  const FieldId id{control, element};
  const SetupField& field = model_.Fields().At(id);
  QWidget* widget = nullptr;
  switch (field.row->kind) {
    case FieldKind::List:
      widget = MakeList(id, parent);
      break;
    case FieldKind::Text:
      widget = MakeText(id, parent);
      break;
    case FieldKind::Check:
    case FieldKind::Option:
      widget = MakeCheck(id, parent);
      break;
    case FieldKind::Button:
      widget = MakeButton(id, parent);
      break;
    case FieldKind::Label: {
      auto* const label = new QLabel(parent);
      label->setTextFormat(Qt::PlainText);
      widget = label;
      break;
    }
    case FieldKind::Panel:
    case FieldKind::Grid:
    case FieldKind::Mark:
      return nullptr;
  }
  widget->setObjectName(ToText(NameOf(field)));
  new FocusEvents(model_, id, widget);
  widgets_[{control, element}] = widget;
  return widget;
}

QWidget* FieldWidgets::MakeList(FieldId field, QWidget* parent) {
  auto* const list = new ListField(parent);
  list->setMaxVisibleItems(16);
  list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  QObject::connect(list, &QComboBox::activated, list, [this, field](int index) { model_.SetIndex(field, index); });
  return list;
}

QWidget* FieldWidgets::MakeText(FieldId field, QWidget* parent) { return new TextField(model_, field, parent); }

QWidget* FieldWidgets::MakeCheck(FieldId field, QWidget* parent) {
  auto* const check = new MarkedCheckBox(parent);
  QObject::connect(check, &QCheckBox::clicked, check, [this, field](bool on) { model_.SetValue(field, on ? 1 : 0); });
  return check;
}

QWidget* FieldWidgets::MakeButton(FieldId field, QWidget* parent) {
  auto* const button = new QPushButton(parent);
  button->setAutoDefault(false);
  const bool leaves = field.control == Control::cmdOk || field.control == Control::cmdCancel;
  QObject::connect(button, &QPushButton::clicked, button,
                   [this, field, leaves] { leaves ? press_(field.control) : model_.Press(field.control); });
  return button;
}

void FieldWidgets::Adopt(Control control, QWidget* widget) {
  widget->setObjectName(ToText(NameOf(control)));
  widgets_[{control, 0}] = widget;
}

QWidget* FieldWidgets::Find(FieldId field) const {
  const auto found = widgets_.find({field.control, field.element});
  return found == widgets_.end() ? nullptr : found->second;
}

void FieldWidgets::Refresh() {
  for (const auto& [key, widget] : widgets_) {
    const SetupField& field = model_.Fields().At(key.first, key.second);
    if (auto* const list = qobject_cast<QComboBox*>(widget)) {
      ShowList(*list, field);
    } else if (auto* const line = qobject_cast<QLineEdit*>(widget)) {
      ShowText(*line, field);
    } else if (auto* const check = qobject_cast<QCheckBox*>(widget)) {
      if (check->text() != CaptionOf(field)) check->setText(CaptionOf(field));
      if (check->isChecked() != (field.value != 0)) check->setChecked(field.value != 0);
    } else if (auto* const button = qobject_cast<QPushButton*>(widget)) {
      if (button->text() != ToText(field.text)) button->setText(ToText(field.text));
    } else if (auto* const label = qobject_cast<QLabel*>(widget)) {
      if (label->text() != ToText(field.text)) label->setText(ToText(field.text));
    }
    if (!field.tip.empty() && widget->toolTip() != ToText(field.tip)) widget->setToolTip(ToText(field.tip));
    const bool enabledHere = widget->isEnabledTo(widget->parentWidget());
    if (enabledHere != field.enabled) widget->setEnabled(field.enabled);
    if (widget->isHidden() == field.visible) widget->setVisible(field.visible);
  }
}
