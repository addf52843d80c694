#include "publish/dde_topics.h"

#include "protocol/number.h"

namespace {

/// General text of a slot, on the stack; empty for an empty slot.
NumberText SlotText(const DdeItem& slot) {
  if (const double* weight = std::get_if<double>(&slot)) return GeneralText(Decimal::FromDouble(*weight));
  if (const std::int16_t* status = std::get_if<std::int16_t>(&slot)) return GeneralText(Decimal::FromDouble(*status));
  return {};
}

}  // namespace

std::string DdeTopics::TopicOf(int form) {
  const bool shared = form <= 1 || (form >= 4 && form <= 9);
  return "DDEForm" + std::to_string(shared ? 0 : form);
}

int DdeTopics::FormOf(std::string_view topic) {
  for (int form = 0; form < kChannels; ++form) {
    if (TopicOf(form) == topic) return form;
  }
  return -1;
}

bool DdeTopics::Store(int form, int item, std::string_view text) {
  std::string& stored = texts_[form][item];
  if (stored == text) return false;
  stored = text;
  return true;
}

void DdeTopics::Tell(int form, unsigned items) {
  if (items != 0 && watcher_ != nullptr) watcher_->ItemsChanged(form, items);
}

void DdeTopics::SetItemText(int form, int item, std::string_view text) {
  if (Store(form, item, text)) Tell(form, 1U << item);
}

void DdeTopics::UpdateDDELinks(const Tables& tables, int ch) {
  if (ch < 0 || ch >= kChannels) return;
  unsigned changed = 0;
  for (int item = 0; item < static_cast<int>(kDdeItemNames.size()); ++item) {
    if (Store(ch, item, SlotText(tables.ChanDdeItems[ch][item]).View())) changed |= 1U << item;
  }
  Tell(ch, changed);
  if (watcher_ != nullptr) watcher_->LinksUpdated(ch);
}
