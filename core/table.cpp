#include "core/table.h"

void RaiseSubscriptOutOfRange() { throw RunTimeError(ErrorNumber::SubscriptOutOfRange, "Subscript out of range"); }
