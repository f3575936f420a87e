#include <cstdio>

int main()
{
    std::puts("kivo " KIVO_VERSION);
    return 0;
}
