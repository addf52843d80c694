#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "config/setup/fields.h"

/// How fields are named on a terminal.

/// What stands beside a field on the screen, as one text: "Device Protocol", "Gross_Wt Length", "Command 1 Text".
std::string PlainName(const SetupField& field);

/// The field that a text names: by its control, "cb(3)", or by its plain name, whatever its letters' case, blanks and
/// punctuation.
std::optional<FieldId> FindField(const SetupFields& fields, std::string_view name);

/// Fields of the channel page and of the OPC panel, and those of the protocol, in the order of the screen.
std::vector<FieldId> ChannelFields();
std::vector<FieldId> ProtocolFields();

/// The value as it is shown: the item of a list, "yes" or "no" of a check box.
std::string ShownValue(const SetupField& field);
