#pragma once

#include <QRegion>
#include <QWidget>
#include <functional>

#include "diagnostics/screen_layout.h"
#include "ui/qt_canvas.h"

/// The surface of the main window: the background picture and the cells drawn over it. It knows its own cells'
/// copies from a repaint that the window system asks for.
class WeighScreen : public QWidget {
 public:
  explicit WeighScreen(QWidget* parent);

  /// Called before a repaint that no cell has asked for.
  void OnPainted(std::function<void()> painted) { painted_ = std::move(painted); }
  /// Called with the place of the mouse in pixels of the layout.
  void OnMouseMoved(std::function<void(QPoint)> moved) { moved_ = std::move(moved); }

  /// Draws the picture of this layout, at the magnification and the window's scale factor.
  void SetLayout(const ScreenLayout& layout);
  QtCanvas& Surface() { return canvas_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;

 private:
  QtCanvas canvas_;
  double magnification_ = 1;
  QRegion copied_;  ///< changed by cells since the last paint event
  int copies_ = 0;  ///< of cells since then
  std::function<void()> painted_;
  std::function<void(QPoint)> moved_;
};
