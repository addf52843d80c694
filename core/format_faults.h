#pragma once

struct Engine;

/// Tells what is wrong with the format files (`ProtoFault`) after the first initialisation. A format that kept
/// channels closed is a critical error of its own, with its protocol and those channels: log, speech, box. All others
/// are one line of the error log. Raises nothing; a log that cannot be written is told to the operator.
void TellFormatFaults(Engine& engine);
