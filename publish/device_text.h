#pragma once

#include <string>
#include <string_view>

/// How the parameter stands in a device text.
enum class DeviceTextForm {
  Plain,   ///< no field for a parameter
  Wide,    ///< a field of "~" with something behind it, or of several "~"
  Narrow,  ///< the definition ends in its only "~"
};

struct DeviceText {
  DeviceTextForm form;
  std::string text;   ///< what goes to the device, start and terminator characters included
  std::string value;  ///< the parameter as written into the field
};

/// Text of a command for the device. `definition` may hold a run of "~" that stands for the parameter; the value
/// is never padded, and one too long for the field loses its leading characters. `startChar` and `terminator` are
/// character codes, 0 or less for none; terminator 1310 is the pair CR LF. Raises 5 for a code that is no
/// character and 6 for a parameter that is not finite, where it is needed.
DeviceText BuildDeviceText(std::string_view definition, double parameter, int startChar, int terminator);
