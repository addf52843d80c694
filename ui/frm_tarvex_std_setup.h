#pragma once

#include <QDialog>
#include <QTimer>
#include <functional>
#include <string>

#include "config/setup/channel_setup.h"
#include "ui/setup/field_widgets.h"

class QGroupBox;
class QLabel;
class StatusGridView;
class StreamLine;

/// The setup screen. It draws the model and hands events in; every rule is the model's.
class frmTarvexStdSetup : public QDialog, public SetupForm {
 public:
  frmTarvexStdSetup();
  ~frmTarvexStdSetup() override;

  struct Parts {
    SetupModel& model;
    ChannelSetup& setup;
    /// The device behind a COM number and what stands in its way, in a few words.
    std::function<std::string(int comNumber)> describePort;
  };
  /// What the window is about; all of it must outlive the window.
  void Use(Parts parts);
  /// The window in whose middle this one comes up; null for none.
  void SetOwner(const QWidget* owner) { owner_ = owner; }

  void Show() override;
  void Hide() override;
  void BusyPointer(bool busy) override;

 protected:
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;
  void reject() override;

 private:
  void Build();
  QWidget* MakeHeading();
  QGroupBox* MakePanel(Control control, QWidget* parent);
  QWidget* MakeConnection();
  QWidget* MakeConnectionLists(QWidget* parent);
  QWidget* MakeConnectionTexts(QWidget* parent);
  QWidget* MakeConnectionChecks(QWidget* parent);
  QWidget* MakeMiddle();
  QWidget* MakeDataFields(QWidget* parent);
  QWidget* MakeStatus(QWidget* parent);
  QWidget* MakeEntry(QWidget* parent);
  QWidget* MakeCommands(QWidget* parent);
  QWidget* MakeOpc(QWidget* parent);
  QWidget* MakeFoot();

  void Refresh();
  void RefreshPort();
  void RefreshLine();
  std::optional<FieldId> FocusedField() const;

  std::optional<Parts> parts_;
  std::unique_ptr<FieldWidgets> fields_;
  const QWidget* owner_ = nullptr;
  QWidget* covered_ = nullptr;  ///< holds the data field panel
  StatusGridView* grid_ = nullptr;
  QLabel* portNote_ = nullptr;
  StreamLine* line_ = nullptr;
  int describedPort_ = -1;
  bool refreshing_ = false;
  QTimer lineTimer_;
};
