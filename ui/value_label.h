#pragma once

#include <QFrame>
#include <QString>

/// A text that may be anything, in a place of fixed size: nothing around it moves, whatever is shown.
class ValueLabel : public QFrame {
  Q_OBJECT

 public:
  /// What becomes of a text that is too long: cut with dots, drawn smaller so that no digit is lost, or wrapped at
  /// any character.
  enum class Fit { Cut, Shrink, Wrap };

  /// The place is as wide as so many digits and as high as so many lines of the label's font.
  ValueLabel(Fit fit, int columns, int lines, QWidget* parent);

  void SetText(const QString& text);
  const QString& Text() const { return text_; }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool event(QEvent* event) override;

 private:
  QFont FittingFont(int width) const;
  bool Fits() const;

  Fit fit_;
  int columns_;
  int lines_;
  QString text_;
  QString drawn_;  ///< as much of the text as could ever be seen
};
