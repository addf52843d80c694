#pragma once

#include <QString>
#include <QWidget>
#include <string>

/// A stream as its bytes: one cell a character, numbered as the protocols count them, some of them lit, and what was
/// made of these beside it.
class StreamLine : public QWidget {
 public:
  explicit StreamLine(QWidget* parent);

  /// `first` to `last` count from 1 and are lit; `first` 0 lights none. `value` stands on the right, `notice` in the
  /// place of the cells if there is no stream.
  void Show(const std::string& stream, int first, int last, const QString& value, const QString& notice);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool event(QEvent* event) override;

 private:
  int LaidOutWidth() const;
  int CellWidth() const;

  std::string stream_;
  int first_ = 0, last_ = 0;
  QString value_, notice_;
};
