#include "diagnostics/detail_view.h"

#include "core/channel_state.h"

namespace {

/// The window made for the channel. `Open` refuses protocol 0 before, so that the SQL detail is never asked for.
DetailWindow WindowOf(const Tables& tables, int ch) {
  if (tables.ChanVirtualTerminal[ch] == True) return DetailWindow::VirtualTerminal;
  return tables.ChanProtocol[ch] == 0 ? DetailWindow::Sql : DetailWindow::Device;
}

}  // namespace

DetailWindow DetailView::Open(int ch) {
  if (tables_.ChanEnabled[ch] == False || tables_.ChanProtocol[ch] == 0) return DetailWindow::None;
  tables_.DetailChannel = ch;
  const DetailWindow window = WindowOf(tables_, ch);
  if (window == DetailWindow::Device) {
    ForceRepublication(tables_, ch);
    tables_.ChanPrevStreamId[ch] = kPrevStreamIdSentinel;
    texts_.Fill({});
    rawVisible_ = false;
    texts_[kDetailDescription] = tables_.ChanDeviceDesc[ch];
    tables_.ChanDetailOpen[ch] = True;
  }
  return window;
}

void DetailView::Close() {
  tables_.ChanDetailOpen.Fill(False);
  tables_.ChanSqlDetailOpen.Fill(False);
}

void DetailView::Show(int element, std::string_view text) {
  texts_[element] = text;
  if (element == kDetailRaw) rawVisible_ = true;
}
