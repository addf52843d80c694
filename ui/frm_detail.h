#pragma once

#include <QDialog>
#include <array>

#include "diagnostics/detail_view.h"

class QGridLayout;
class QLabel;
class ValueLabel;

/// The device detail of one channel: its live values while the scan goes on.
class frmDetail : public QDialog {
 public:
  frmDetail();

  /// Fills the window from the model; channels are numbered from 1 here. With `raw` the place of the raw stream is
  /// kept free from the start, so that nothing moves when the first one comes.
  void Fill(const DetailView& view, int channelNumber, bool raw);
  /// Takes over what the model holds for one element, 0 to 22.
  void Take(const DetailView& view, int element);

 private:
  QWidget* MakeHead();
  QWidget* MakeWeights();
  QWidget* MakeReadings();
  QWidget* MakeDeviceFields();
  /// Makes caption and value of a field, `Ld` and `l` under its element.
  void MakeField(const DetailField& field, ValueLabel* value, QWidget* parent);
  /// Puts the fields of a group under one another, caption left and value right.
  void MakeRows(QGridLayout& grid, int firstRow, int firstColumn, DetailGroup group, QWidget* parent);

  QLabel* heading_ = nullptr;
  std::array<QLabel*, kDetailElements> l_{};
  std::array<ValueLabel*, kDetailElements> Ld_{};
};
