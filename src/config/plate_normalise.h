#pragma once
// One canonical form of a plate text, so that a plate typed with Cyrillic
// letters and the same plate typed with their Latin look-alikes compare equal.
#include <string>

namespace vx::config {

// Byte by byte over Windows-1251 text: each of the twelve Cyrillic capitals
// with a Latin twin (А В С Е Н К М О Р Т Х У) becomes that Latin capital;
// every other byte is copied. The result is as long as the input.
std::string normalisePlate(const std::string& text);

} // namespace vx::config
