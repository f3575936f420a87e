#include "player/PlayTurn.h"

namespace kivo::tunehive {

namespace {

std::uint64_t g_turn = 0;

} // namespace

std::uint64_t GetPlayTurn()
{
    return g_turn;
}

void NextPlayTurn()
{
    ++g_turn;
}

} // namespace kivo::tunehive
