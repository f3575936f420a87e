#include "player/PlayTurn.h"

namespace kivo::tunehive {

namespace {

std::uint64_t theTurn = 0;
bool isStartUnderWay = false;

} // namespace

std::uint64_t GetPlayTurn()
{
    return theTurn;
}

void NextPlayTurn()
{
    ++theTurn;
}

bool IsStartUnderWay()
{
    return isStartUnderWay;
}

void SetStartUnderWay(bool underWay)
{
    isStartUnderWay = underWay;
}

} // namespace kivo::tunehive
