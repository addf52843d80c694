#pragma once

#include <cstdint>

#include "config/setup/fields.h"

struct Tables;

/// How the fields of the screen and the settings in the tables become each other.

/// The settings of channel `ch` go to the fields, in the order of the screen, one after the other: each rule sees the
/// fields that come later as they were.
void ChannelToFields(Tables& tables, int ch, SetupFields& fields, const SetField& set);
/// And back. Raises 6 for a number above 32 bits.
void FieldsToChannel(const SetupFields& fields, Tables& tables, int ch);

/// The numbers, texts and commands of protocol `proto` go to the fields; a number that is not set shows as blank.
void ProtocolToFields(Tables& tables, int proto, SetupFields& fields);
/// And back, all or nothing. Positions and lengths are read strictly, raising 13 for what is no whole number; the other
/// numbers by their leading digits. Raises 6 for a number above 32 bits.
void FieldsToProtocol(const SetupFields& fields, Tables& tables, int proto);
