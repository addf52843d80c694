#pragma once

#include "platform/dbus/bus_face.h"
#include "publish/dde_topics.h"

/// `/org/tarvex/dde/<topic>` on the bus: the seven items of a topic as text properties. Reading one is a request,
/// writing one a poke, its announcement an advise link.
class TopicFace {
 public:
  /// `form` is the one that answers for its topic.
  TopicFace(DdeTopics& topics, BusLink& link, int form);

  int Register(sd_bus* bus);
  /// Announces what is marked, see `BusFace`.
  void Announce() { face_.Announce(); }
  /// Announces items, bit n for item n.
  void AnnounceItems(unsigned items);

  /// Text of the item as the program holds it.
  const std::string& Request(int item) const { return topics_.Request(form_, item); }
  void Poke(int item, std::string_view text);

 private:
  DdeTopics& topics_;
  int form_;
  BusFace face_;
  bool poked_ = false;  ///< the change under way is a client's
};
