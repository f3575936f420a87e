#include "shell/base/DataFolder.h"

#include "shell/contracts/framework/Paths.h"
#include "shell/contracts/host/KivoApi.h"

namespace kivo::tunehive {

std::optional<String> GetDataFolder()
{
    String directory;
    if (_KivoAPI_GetMyDir(&directory) == 0)
        return std::nullopt;
    return ComposePath(u"%stunehive\\", {directory});
}

} // namespace kivo::tunehive
