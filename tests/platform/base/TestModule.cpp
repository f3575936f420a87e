#include "shell/contracts/base/Export.h"

// A module of attributes as the program loads them.
namespace {

bool refuses = false;
int editor = 0; // Only its address is looked at.

} // namespace

extern "C" KIVO_API void* KivoCreateMetadataEditor()
{
    return refuses ? nullptr : &editor;
}

extern "C" KIVO_API void TestRefuse(int on)
{
    refuses = on != 0;
}
