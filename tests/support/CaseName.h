#pragma once

#include <gtest/gtest.h>

#include <string>

namespace kivo::test {

// The last argument of INSTANTIATE_TEST_SUITE_P for rows that bear their own name.
template <class Case>
std::string CaseName(const testing::TestParamInfo<Case>& row)
{
    return row.param.name;
}

} // namespace kivo::test
