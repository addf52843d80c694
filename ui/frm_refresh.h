#pragma once

#include <QDialog>
#include <array>
#include <vector>

#include "diagnostics/refresh_rates.h"

class QGridLayout;
class QLabel;
class QLineEdit;
class QScrollBar;
class QSlider;

/// The refresh rates: a simple face with a slider of three positions, and an advanced one with the six numbers
/// behind it. Both show the rates that the scan measures.
class frmRefresh : public QDialog {
 public:
  explicit frmRefresh(Engine& engine);

  /// `cmdRefresh`: fills the boxes, places the slider from them and starts with the simple face.
  void Fill();
  /// A measured rate for `lScan1` to `lScan3`, in ticks a second.
  void ShowRate(int label, int ticksPerSecond);

 private:
  enum class Face { Simple, Advanced };

  QWidget* MakeSlider();
  QWidget* MakeNumbers();
  void MakeBox(QGridLayout& grid, int box, QWidget* parent);
  void MakeStepper(QGridLayout& grid, QWidget* parent);
  void MakeRates(QGridLayout& grid, int row, QWidget* parent);
  QWidget* MakeButtons();

  void ShowFace(Face face);
  void ShowMeaning();
  void PlaceSlider();
  void TakeSliderPosition();
  void SelectBox(int box);
  void Update();
  RateValues Values() const;
  void SetValues(const RateValues& values);

  Engine& engine_;
  RateValues kept_{};  ///< what a box that holds no number falls back to
  int selected_ = 0;   ///< box that `VScroll1` steps
  QSlider* slider_ = nullptr;
  std::array<QLineEdit*, kRateBoxes> tVal_{};
  QScrollBar* VScroll1_ = nullptr;
  std::array<QLabel*, 3> lScan_{};
  QLabel* meaning_ = nullptr;
  std::vector<QWidget*> simpleFace_;
  std::vector<QWidget*> advancedFace_;
};
