#pragma once

#include "shell/contracts/base/Delegate.h"
#include "shell/contracts/base/LifeToken.h"
#include "shell/contracts/base/SDKEvent.h"

namespace kivo::tunehive {

// What a posted event brings to its delegate. Thread: any.
class ITuneHive_AsyncCallbackParam {
public:
    ITuneHive_AsyncCallbackParam() = default;
    ITuneHive_AsyncCallbackParam(const ITuneHive_AsyncCallbackParam&) = delete;
    ITuneHive_AsyncCallbackParam& operator=(const ITuneHive_AsyncCallbackParam&) = delete;

    virtual void Release() { delete this; }

protected:
    virtual ~ITuneHive_AsyncCallbackParam() = default;
};

using AsyncCallback = Delegate<ITuneHive_AsyncCallbackParam*>;

// A call that is made later on the user-interface thread, by _KivoAPI_PostSDKEvent.
// Thread: made on any; run where the host runs it.
class TuneHiveEvent : public ISDKEvent {
public:
    // Owns `param` from here on. `life` watches the object of `callback`: once that is gone the
    // event does nothing. An empty watch stands for an object that outlives all events.
    TuneHiveEvent(const AsyncCallback& callback,
                  ITuneHive_AsyncCallbackParam* param,
                  LifeWatch life);
    TuneHiveEvent(const TuneHiveEvent&) = delete;
    TuneHiveEvent& operator=(const TuneHiveEvent&) = delete;

    // Calls the delegate if there is one, with a parameter, and its object still lives.
    void Execute() override;
    void Release() override;

protected:
    virtual ~TuneHiveEvent();

private:
    AsyncCallback callback_;
    ITuneHive_AsyncCallbackParam* param_;
    LifeWatch life_;
};

// Makes such an event and posts it. Owns `param` from here on.
void PostCallback(const AsyncCallback& callback,
                  ITuneHive_AsyncCallbackParam* param,
                  LifeWatch life);

} // namespace kivo::tunehive
