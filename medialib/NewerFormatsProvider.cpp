#include "medialib/NewerFormatsProvider.h"

#include "medialib/KivoMediaHelper.h"
#include "medialib/NewerFormats.h"

namespace kivo::tunehive {

NewerFormatsProvider::NewerFormatsProvider()
{
    for (const NewerFormat& format : GetNewerFormats())
        types_.push_back(format.type);
}

void NewerFormatsProvider::Release()
{
    delete this;
}

int NewerFormatsProvider::GetMediaInfo(String path, MediaInfo& info)
{
    const CKivoMediaHelper helper;
    helper.ReadWMFInfo(path, info);
    return 1;
}

void NewerFormatsProvider::GetSupportedTypes(std::vector<int>& types) const
{
    if (&types != &types_)
        types = types_;
}

} // namespace kivo::tunehive
