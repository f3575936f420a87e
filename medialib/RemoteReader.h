#pragma once

#include "medialib/MediaInfo.h"
#include "shell/contracts/base/Released.h"
#include "shell/contracts/base/String.h"
#include "shell/contracts/control/MediaAttributes.h"

namespace kivo::tunehive {

class CRemoteReaderCallback;
class IRemoteReaderManager;

// The platform's reader of one stream, with what it needs to report. Thread: user interface.
class CRemoteReader {
public:
    // `manager` is borrowed: it hears of the stream from any thread, until Release has returned.
    // Without the platform's reader, opening and closing fail and there are no attributes.
    CRemoteReader(const String& url, IRemoteReaderManager* manager);
    CRemoteReader(const CRemoteReader&) = delete;
    CRemoteReader& operator=(const CRemoteReader&) = delete;

    virtual void Release(); // Destroys the object.

    bool Open();  // Starts the stream; what comes of it is reported. False: nothing will come.
    bool Close(); // Doesn't wait for the network.
    void ReadAttributes(MediaInfo& info) const; // Of the header so far, as of a local file.

protected:
    virtual ~CRemoteReader();

private:
    String url_;
    Released<IWMReader> reader_;
    Released<CRemoteReaderCallback> callback_; // Our reference.
};

} // namespace kivo::tunehive
