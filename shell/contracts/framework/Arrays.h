#pragma once

#include "shell/contracts/base/String.h"

#include <vector>

namespace kivo {

class CStringArray : public std::vector<String> {
public:
    using std::vector<String>::vector;
    virtual ~CStringArray() = default; // The array of message 11014 is freed through it.
};

using CPtrArray = std::vector<void*>;

} // namespace kivo
