#pragma once

#include <cstdint>
#include <random>
#include <string>

namespace kivo::test {

// One of the ways in which a file goes wrong: flipped bits, a cut end, zeros, bytes put in, or a
// size field that grew. The same `random` gives the same damage.
[[nodiscard]] std::string DamageBytes(std::string bytes, std::mt19937& random);

} // namespace kivo::test
