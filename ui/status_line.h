#pragma once

#include <QTimer>
#include <QWidget>
#include <functional>

class QLabel;

/// The line under the rows of the panel: revision, counters of debug mode, the newest notice, place of the mouse. It
/// covers all of its rectangle, so that a new text repaints no row behind it.
class StatusLine : public QWidget {
 public:
  explicit StatusLine(QWidget* parent);

  /// Letters `pixels` high at factor 1, magnified.
  void SetTextHeight(int pixels);
  void SetRevision(const QString& text);
  /// Shows `lDebugMode` with what `text` gives, asked again each second; hides it if there is none.
  void ShowDebug(std::function<QString()> text);
  /// Shows a notice for a while, or until the next one.
  void Tell(const QString& notice);
  void TellUntilNext(const QString& notice);
  /// `lfx` and `lfy`.
  void ShowMouse(const QPoint& place);

 private:
  QLabel* MakeLabel(const char* name, const QColor& ink);

  QLabel *lRevision_, *lDebugMode_, *lNotice_, *lfx_, *lfy_;
  std::function<QString()> debugText_;
  QTimer noticeTime_;
  QTimer debugTime_;
};
