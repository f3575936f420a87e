#include "medialib/WMFProvider.h"

#include "medialib/KivoMediaHelper.h"
#include "medialib/MediaFileType.h"

namespace kivo::tunehive {

WMFProvider::WMFProvider()
    : types_{kFileWma,
             kFileWmv,
             kFileAsf,
             kFileAvi,
             kFileMp3,
             kFileWav,
             kFileMidi,
             kFileMpeg,
             kFileRm,
             kFileRmvb,
             kFileMp4,
             kFileApe}
{
}

void WMFProvider::Release()
{
    delete this;
}

int WMFProvider::GetMediaInfo(String path, MediaInfo& info)
{
    const CKivoMediaHelper helper;
    helper.ReadWMFInfo(path, info);
    return 1;
}

void WMFProvider::GetSupportedTypes(std::vector<int>& types) const
{
    if (&types != &types_)
        types = types_;
}

} // namespace kivo::tunehive
