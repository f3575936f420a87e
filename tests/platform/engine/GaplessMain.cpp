#include "tests/platform/engine/EngineRun.h"

#include <gtest/gtest.h>

// The same tests with tracks that are joined.
int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    kivo::test::EngineRun::SetGapless(/*on=*/true);
    return RUN_ALL_TESTS();
}
