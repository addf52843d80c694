#include "ui/magnification.h"

#include <QApplication>
#include <QPointer>
#include <QScreen>
#include <algorithm>
#include <cmath>
#include <vector>

#include "diagnostics/screen_layout.h"
#include "ui/fonts.h"

namespace {

constexpr double kLargest = 8;
constexpr int kFontHeight = 13;  // of boxes, tips and menus

class Display : public QObject {
 public:
  explicit Display(QObject* application) : QObject(application) {
    connect(qApp, &QGuiApplication::primaryScreenChanged, this, [this] { Watch(); });
    Watch();
  }

  double Factor() const { return factor_; }
  void Follow(const ScreenLayout& layout) {
    layout_ = &layout;
    Look();
  }
  void Tell(QObject& context, std::function<void()> take) {
    std::erase_if(listeners_, [](const Listener& listener) { return listener.context.isNull(); });
    listeners_.push_back({&context, std::move(take)});
  }

 private:
  struct Listener {
    QPointer<QObject> context;
    std::function<void()> take;
  };

  void Watch() {
    if (screen_) screen_->disconnect(this);
    screen_ = QGuiApplication::primaryScreen();
    if (!screen_) return;
    connect(screen_, &QScreen::geometryChanged, this, [this] { Look(); });
    connect(screen_, &QScreen::availableGeometryChanged, this, [this] { Look(); });
    Look();
  }
  double FactorForDisplay() const {
    const double fixed = qEnvironmentVariable("TARVEX_SCALE").toDouble();
    if (fixed >= 1) return std::round(8 * std::min(fixed, kLargest)) / 8;
    const QSize room = screen_->availableGeometry().size();
    return std::min(LargestFactor(*layout_, room.width(), room.height()), kLargest);
  }
  void Look() {
    if (layout_ == nullptr || !screen_) return;
    const double factor = FactorForDisplay();
    const QFont font = TextFont(kFontHeight * factor);
    if (factor == factor_ && QApplication::font() == font) return;
    factor_ = factor;
    QApplication::setFont(font);
    const std::vector<Listener> listeners = listeners_;  // a listener may add others
    for (const Listener& listener : listeners) {
      if (listener.context) listener.take();
    }
  }

  QPointer<QScreen> screen_;
  const ScreenLayout* layout_ = nullptr;
  double factor_ = 1;
  std::vector<Listener> listeners_;
};

Display& TheDisplay() {
  static QPointer<Display> display;
  if (!display) display = new Display(qApp);
  return *display;
}

}  // namespace

double Magnification() { return qApp == nullptr ? 1 : TheDisplay().Factor(); }

int Magnified(double length) { return static_cast<int>(std::lround(length * Magnification())); }

void FollowDisplay(const ScreenLayout& layout) { TheDisplay().Follow(layout); }

void OnMagnification(QObject& context, std::function<void()> take) { TheDisplay().Tell(context, std::move(take)); }
