#include "medialib/RemoteReaderCallback.h"

#include "medialib/IRemoteReaderManager.h"

#include <utility>

namespace kivo::tunehive {

CRemoteReaderCallback::CRemoteReaderCallback(String url, IRemoteReaderManager* manager)
    : url_(std::move(url))
    , manager_(manager)
{
}

void CRemoteReaderCallback::AddRef()
{
    ++references_;
}

void CRemoteReaderCallback::Release()
{
    if (--references_ == 0)
        delete this;
}

HRESULT CRemoteReaderCallback::OnStatus(WMT_STATUS status, HRESULT /*result*/)
{
    const CriticalSection::Guard guard(lock_);
    if (manager_ == nullptr)
        return S_OK;
    switch (status) {
    case WMT_STATUS::Opened:
    case WMT_STATUS::Started:
    case WMT_STATUS::NewMetadata: manager_->OnReaderHasData(url_); break;
    case WMT_STATUS::Error:
    case WMT_STATUS::EndOfFile: manager_->OnReaderFailed(url_); break;
    default: break;
    }
    return S_OK;
}

void CRemoteReaderCallback::Detach()
{
    const CriticalSection::Guard guard(lock_);
    manager_ = nullptr;
}

} // namespace kivo::tunehive
