#include "medialib/RemoteProvider.h"

#include "medialib/IMediaLibManager.h"

#include <memory>

namespace kivo::tunehive {

RemoteProvider::~RemoteProvider()
{
    life_.End();
    for (const auto& [url, reader] : readers_)
        reader->Close();
    readers_
        .clear(); // While the rest still stands: a report may be under way until they have gone.
}

void RemoteProvider::Release()
{
    delete this;
}

int RemoteProvider::GetMediaInfo(String url, MediaInfo& /*info*/)
{
    PostStep(url, RemoteOperation::Open);
    return 0;
}

void RemoteProvider::OnReaderHasData(String url)
{
    PostStep(url, RemoteOperation::Harvest);
}

void RemoteProvider::OnReaderFailed(String url)
{
    PostStep(url, RemoteOperation::Drop);
}

void RemoteProvider::PostStep(const String& url, RemoteOperation operation)
{
    auto param = std::make_unique<RemoteProviderProcessParam>(url, static_cast<int>(operation));
    PostCallback(AsyncCallback(this, &RemoteProvider::Process), param.release(), life_.Watch());
}

void RemoteProvider::Process(ITuneHive_AsyncCallbackParam* param)
{
    const auto& step = static_cast<const RemoteProviderProcessParam&>(*param);
    if (step.GetUrl().empty())
        return;
    const auto reader = readers_.find(step.GetUrl());
    const bool isOpen = reader != readers_.end();
    switch (static_cast<RemoteOperation>(step.GetOperation())) {
    case RemoteOperation::Open:
        if (!isOpen)
            OpenReader(step.GetUrl());
        break;
    case RemoteOperation::Drop:
        if (isOpen)
            DropReader(reader);
        break;
    case RemoteOperation::Harvest:
        if (isOpen)
            HarvestReader(reader);
        break;
    default: break;
    }
}

void RemoteProvider::OpenReader(const String& url)
{
    // In the map first: a reader may report before its opening returns.
    auto& reader = readers_[url];
    reader.reset(new CRemoteReader(url, this));
    reader->Open();
}

void RemoteProvider::HarvestReader(Readers::iterator reader)
{
    MediaInfo info;
    reader->second->ReadAttributes(info);
    if (info.empty())
        return; // A later report may bring data yet.
    const String url = reader->first;
    DropReader(reader);
    if (IMediaLibManager* manager = FindMediaLibManager())
        manager->UpdateMediaInfo(url, info, static_cast<int>(NotifyMode::Now));
}

void RemoteProvider::DropReader(Readers::iterator reader)
{
    reader->second->Close();
    readers_.erase(reader);
}

} // namespace kivo::tunehive
