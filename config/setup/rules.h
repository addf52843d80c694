#pragma once

#include "config/setup/fields.h"

/// How the channel is connected (`cb(0)`): what a serial port needs, what a terminal needs.
void ApplyConnectionRule(SetupFields& fields, const SetField& set);
/// The protocol's number (`cb(3)`): the VantODBC packet protocol 0 has neither fields nor commands.
void ApplyProtocolRule(SetupFields& fields, const SetField& set, int proto);
/// A fixed format can be looked at; with `fixed` false it can be edited. Three of its fields can be typed into
/// whatever it is: Max Stream Length, and name and value of the commands.
void FixedFormatMode(SetupFields& fields, bool fixed);
/// The database driver (`cb(4)`).
void ApplyDriverRule(SetupFields& fields);
/// Check boxes that switch other fields; any other one has no rule.
void ApplyCheckRule(SetupFields& fields, Control check);
