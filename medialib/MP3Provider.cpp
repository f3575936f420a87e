#include "medialib/MP3Provider.h"

#include "medialib/KivoMediaHelper.h"
#include "medialib/MediaFileType.h"

namespace kivo::tunehive {

MP3Provider::MP3Provider()
    : types_{kFileMp3}
{
}

void MP3Provider::Release()
{
    delete this;
}

int MP3Provider::GetMediaInfo(String path, MediaInfo& info)
{
    const CKivoMediaHelper helper;
    helper.ReadMP3Info(path, info);
    return 1;
}

void MP3Provider::GetSupportedTypes(std::vector<int>& types) const
{
    if (&types != &types_)
        types = types_;
}

} // namespace kivo::tunehive
