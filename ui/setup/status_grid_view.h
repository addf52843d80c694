#pragma once

#include <QAbstractTableModel>
#include <QTableView>

#include "config/setup/model.h"

/// The status table as Qt's views read it.
class StatusGridModel : public QAbstractTableModel {
 public:
  explicit StatusGridModel(const StatusGrid& grid, QObject* parent) : QAbstractTableModel(parent), grid_(grid) {}

  int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : StatusGrid::kRows; }
  int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : StatusGrid::kColumns; }
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  /// All cells have changed.
  void Rebind();

 private:
  const StatusGrid& grid_;
};

/// The grid `TDBList1`: which row is selected and in sight is the model's to say.
class StatusGridView : public QTableView {
 public:
  StatusGridView(SetupModel& model, QWidget* parent);

  /// Shows the table as the model has it now.
  void Refresh();
  /// Scrolls by the wheel, which a disabled view does not get.
  void Scroll(int rows);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void MagnifySections();
  void ShowSelection();

  SetupModel& model_;
  StatusGridModel* table_;
  int shownRevision_ = -1;
  int shownRow_ = -1;
  bool showing_ = false;
};
