#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "core/forms.h"
#include "diagnostics/detail_view.h"

class QDialog;
class QWidget;
class frmDetail;
class frmRefresh;
class frmSQLDetail;
class VANTOR;
class VirtualTerminal;
struct Engine;

/// The windows that look into the running scan: one at a time, opened from the main window's buttons. The windows
/// are made when they are first opened and kept for the next time.
class Dialogs : public ScanDialogs {
 public:
  Dialogs();
  Dialogs(const Dialogs&) = delete;
  Dialogs& operator=(const Dialogs&) = delete;
  ~Dialogs() override;

  /// The running system; must come before anything is opened, and outlive this object.
  void Use(Engine& engine, VirtualTerminal& virtualTerminal);
  /// Called with True when a window opens and with False when it closes: the main window's buttons follow.
  void OnOpen(std::function<void(bool open)> handler) { onOpen_ = std::move(handler); }
  bool IsOpen() const { return open_ != nullptr; }

  /// The buttons `cmdDetail(ch)` and `cmdRefresh`; `owner` is the window they are on, null for none. Nothing happens
  /// while a window is open.
  void cmdDetail(int ch, const QWidget* owner);
  void cmdRefresh(const QWidget* owner);
  /// Closes the window that is open, as its own button does.
  void Close();
  /// End of the program: the windows go.
  void Unload();

  void ShowDetail(int element, std::string_view text) override;
  void ShowRate(int label, int ticksPerSecond) override;

 private:
  void Show(QDialog& dialog, const QWidget* owner);
  void TakeClosing();

  Engine* engine_ = nullptr;
  VirtualTerminal* virtualTerminal_ = nullptr;
  std::unique_ptr<DetailView> detailView_;
  std::unique_ptr<frmDetail> detail_;
  std::unique_ptr<frmSQLDetail> sqlDetail_;
  std::unique_ptr<frmRefresh> refresh_;
  std::unique_ptr<VANTOR> vantor_;
  QDialog* open_ = nullptr;
  std::function<void(bool)> onOpen_;
};
