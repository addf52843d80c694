#include "platform/qt/message_boxes.h"

#include <QApplication>
#include <QWindow>
#include <algorithm>
#include <string>

#include "platform/qt/keep_up.h"
#include "platform/qt/text.h"
#include "platform/run_time_error.h"

namespace {

constexpr std::size_t kMostWaiting = 8;
constexpr int kLongestText = 1000;  // fits a display of 800 x 600, whatever the letters
constexpr int kLongestDetail = 300;
constexpr int kLongestWord = 50;

/// Line ends are kept; what a device or a file put into the text is made harmless, and never widens the box.
QString BoxText(std::string_view bytes, int longest) {
  QString text = ToVisibleText(bytes);
  text.replace(ToVisibleText("\r\n"), "\n");
  if (text.size() > longest) text = text.left(longest) + QChar(0x2026);
  QString broken;
  int word = 0;
  for (const QChar character : text) {
    word = character.isSpace() ? 0 : word + 1;
    if (word > kLongestWord) {
      broken += QChar(0x200B);  // the line may break here
      word = 1;
    }
    broken += character;
  }
  return broken;
}

QWidget* Owner() {
  if (QWidget* active = QApplication::activeWindow()) return active;
  const QWidgetList windows = QApplication::topLevelWidgets();
  const auto visible = std::ranges::find_if(windows, [](const QWidget* window) { return window->isVisible(); });
  return visible == windows.end() ? nullptr : *visible;
}

/// The box stays above the window it came from, without being its child: that window may be taken down meanwhile.
void PutAbove(QWidget& box, const QWidget* owner) {
  if (!owner || !owner->windowHandle()) return;
  box.winId();
  box.windowHandle()->setTransientParent(owner->windowHandle());
}

}  // namespace

void MessageBoxes::Show(std::string_view caption, std::string_view text, std::string_view detail, Icon icon) {
  const Box box{ToVisibleText(caption), BoxText(text, kLongestText), BoxText(detail, kLongestDetail), icon};
  if (box == shown_ || std::ranges::find(waiting_, box) != waiting_.end()) return;
  if (waiting_.size() < kMostWaiting) waiting_.push_back(box);
  if (!ended_) ShowNext();
}

void MessageBoxes::ShowUntilRead(std::string_view caption, std::string_view text) {
  Show(caption, text);
  HoldUntilRead();
}

void MessageBoxes::HoldUntilRead() {
  if (!shown_ || held_) return;
  QEventLoop loop;
  held_ = &loop;
  loop.exec();
  held_ = nullptr;
  if (shown_) DismissAll();  // the program was ended while the box stood
}

int MessageBoxes::Ask(std::string_view caption, std::string_view text) {
  constexpr int kAbort = 3, kRetry = 4, kIgnore = 5;
  if (ended_ || asking_ != nullptr) return kIgnore;
  QMessageBox box(QMessageBox::Warning, ToVisibleText(caption), BoxText(text, kLongestText),
                  QMessageBox::Abort | QMessageBox::Retry | QMessageBox::Ignore);
  box.setTextFormat(Qt::PlainText);
  box.setAttribute(Qt::WA_QuitOnClose, false);
  KeepUp(box);
  PutAbove(box, Owner());
  asking_ = &box;
  const int answer = box.exec();
  asking_ = nullptr;
  if (answer == QMessageBox::Abort) return kAbort;
  return answer == QMessageBox::Retry ? kRetry : kIgnore;
}

void MessageBoxes::ShowNext() {
  if (shown_) return;
  if (!waiting_.empty()) {
    shown_ = waiting_.front();
    waiting_.pop_front();
    return PutUp(*shown_);
  }
  if (held_) held_->quit();
}

void MessageBoxes::PutUp(const Box& box) {
  const QMessageBox::Icon icon = box.icon == Icon::None       ? QMessageBox::NoIcon
                                 : box.icon == Icon::Critical ? QMessageBox::Critical
                                                              : QMessageBox::Warning;
  const QWidget* const owner = Owner();
  standing_ = std::make_unique<QMessageBox>(icon, box.caption, box.text);
  standing_->setTextFormat(Qt::PlainText);
  if (!box.detail.isEmpty()) standing_->setInformativeText("<p>" + box.detail.toHtmlEscaped() + "</p>");
  standing_->setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint);
  standing_->setWindowModality(Qt::ApplicationModal);
  standing_->setAttribute(Qt::WA_QuitOnClose, false);
  KeepUp(*standing_);
  PutAbove(*standing_, owner);
  QObject::connect(standing_.get(), &QDialog::finished, standing_.get(), [this] {
    standing_.release()->deleteLater();  // its own signal is being handled
    shown_.reset();
    ShowNext();
  });
  standing_->show();
  standing_->raise();
  standing_->activateWindow();
}

void MessageBoxes::DismissAll() {
  ended_ = true;
  waiting_.clear();
  if (standing_) standing_->reject();
  if (asking_) asking_->done(QMessageBox::Ignore);
}

void MessageBoxes::ShowLast() {
  ShowNext();
  HoldUntilRead();
}

void mb(MessageBoxes& boxes, const RunTimeError& lastError) {
  boxes.Show("Tarvex VantODBC Error",
             "TEST: Channel: 1  JET Database Error: " + std::to_string(lastError.Number()) + "  " +
                 lastError.Description() + "\r\nPlease Contact Orvane Technical Services...",
             {}, MessageBoxes::Icon::Exclamation);
}
