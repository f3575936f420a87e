#include "player/PlayTurn.h"

namespace kivo::tunehive {

namespace {

std::uint64_t g_turn = 0;
bool g_startUnderWay = false;

} // namespace

std::uint64_t GetPlayTurn()
{
    return g_turn;
}

void NextPlayTurn()
{
    ++g_turn;
}

bool IsStartUnderWay()
{
    return g_startUnderWay;
}

void SetStartUnderWay(bool underWay)
{
    g_startUnderWay = underWay;
}

} // namespace kivo::tunehive
