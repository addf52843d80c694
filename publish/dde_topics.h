#pragma once

#include <array>
#include <string>
#include <string_view>

#include "core/tables.h"

/// The seven items of a topic, in the order in which they are written.
inline constexpr std::array<std::string_view, 7> kDdeItemNames = {"Gross", "Tare",    "Net",    "ScaleStat",
                                                                  "Cmd",   "CmdParm", "CmdStat"};

/// Told of item texts that change, for clients on an advise link.
class DdeItemWatcher {
 public:
  virtual ~DdeItemWatcher() = default;
  /// `form` 0 to 31; bit n of `items` stands for item n. Called once an update, however many items it changed.
  virtual void ItemsChanged(int form, unsigned items) = 0;
  /// The program has written all items of a form, changed or not.
  virtual void LinksUpdated(int /*form*/) {}
};

/// The 32 hidden forms `DDEForm0` to `DDEForm31`: plain holders of the item texts that link clients read.
class DdeTopics {
 public:
  /// Topic under which a form answers. Eight forms share "DDEForm0"; it is form 0 that answers there.
  static std::string TopicOf(int form);
  /// Form that answers for a topic, -1 if there is no such topic.
  static int FormOf(std::string_view topic);

  void SetWatcher(DdeItemWatcher* watcher) { watcher_ = watcher; }
  /// Empties all items, as they are before the first update.
  void Clear() { texts_ = {}; }

  /// Raise 9 outside 0 to 31 and 0 to 6.
  const std::string& Request(int form, int item) const { return texts_[form][item]; }
  /// Stores the text, from the program or from a client that pokes it, and tells the watcher of a change.
  void SetItemText(int form, int item, std::string_view text);

  /// Writes the seven items of channel `ch` from `ChanDdeItems`, empty slots as empty texts.
  /// A channel outside 0 to 31 does nothing.
  void UpdateDDELinks(const Tables& tables, int ch);

 private:
  /// True if the text is another one than before.
  bool Store(int form, int item, std::string_view text);
  void Tell(int form, unsigned items);

  Table<Table<std::string, 7>, kChannels> texts_;
  DdeItemWatcher* watcher_ = nullptr;
};
