#pragma once

#include <string>

/// Folder of the device formats that ship: beside an installed program, else where the program was built from.
std::string ShippedFormats();
