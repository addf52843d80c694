#pragma once

#include <cstdint>
#include <string>

/// The status word in words, such as "motion, net, lb"; empty for 0.
std::string StatusWords(std::int16_t status);

/// What a value of CMDSTAT means, in a sentence.
std::string AnswerWords(std::int16_t answer);

/// The shortest text of a weight or parameter.
std::string NumberText(double number);
