#include "shell/base/TuneHiveEvent.h"

#include "shell/contracts/base/Released.h"
#include "shell/contracts/host/KivoApi.h"

#include <utility>

namespace kivo::tunehive {

TuneHiveEvent::TuneHiveEvent(const AsyncCallback& callback,
                             ITuneHive_AsyncCallbackParam* param,
                             LifeWatch life)
    : callback_(callback)
    , param_(param)
    , life_(std::move(life))
{
}

TuneHiveEvent::~TuneHiveEvent()
{
    if (param_ != nullptr)
        param_->Release();
    param_ = nullptr;
}

void TuneHiveEvent::Execute()
{
    if (callback_.IsSet() && param_ != nullptr && life_.IsAlive())
        callback_(param_);
}

void TuneHiveEvent::Release()
{
    delete this;
}

void PostCallback(const AsyncCallback& callback,
                  ITuneHive_AsyncCallbackParam* param,
                  LifeWatch life)
{
    Released<ISDKEvent> event(new TuneHiveEvent(callback, param, std::move(life)));
    _KivoAPI_PostSDKEvent(event.release());
}

} // namespace kivo::tunehive
