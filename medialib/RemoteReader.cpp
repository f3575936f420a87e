#include "medialib/RemoteReader.h"

#include "medialib/KivoMediaHelper.h"
#include "medialib/RemoteReaderCallback.h"

namespace kivo::tunehive {

CRemoteReader::CRemoteReader(const String& url, IRemoteReaderManager* manager)
    : url_(url)
    , reader_(WMCreateReader())
    , callback_(new CRemoteReaderCallback(url, manager))
{
}

CRemoteReader::~CRemoteReader()
{
    callback_->Detach();
}

void CRemoteReader::Release()
{
    delete this;
}

bool CRemoteReader::Open()
{
    return reader_ != nullptr && !Failed(reader_->Open(url_, callback_.get()));
}

bool CRemoteReader::Close()
{
    return reader_ != nullptr && !Failed(reader_->Close());
}

void CRemoteReader::ReadAttributes(MediaInfo& info) const
{
    IWMHeaderInfo3* const header = reader_ != nullptr ? reader_->QueryHeaderInfo() : nullptr;
    if (header != nullptr)
        GetMediaHelperInstance().ReadWMAttributes(header, info);
}

} // namespace kivo::tunehive
