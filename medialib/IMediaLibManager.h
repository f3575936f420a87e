#pragma once

#include "medialib/MediaInfo.h"
#include "shell/contracts/base/Delegate.h"
#include "shell/contracts/base/LifeToken.h"
#include "shell/contracts/base/String.h"

namespace kivo {
class CWorker;
}

namespace kivo::tunehive {

class ITuneHive_AsyncCallbackParam;

// Hears that a track's metadata changed; the argument is a MediaLibUpdateParam that lives for the
// call only. Thread: user interface.
using MediaLibListener = Delegate<ITuneHive_AsyncCallbackParam*>;

// Who hears of an update, and when. Any other number tells nobody.
enum class NotifyMode : int {
    None = 0,
    Later = 1, // Through the host's deferred events.
    Now = 2,   // Before the call returns, on the main thread alone; elsewhere nobody is told.
};

// What a look into the cache gives when it must not wait.
enum class CacheLook : int { Hit, Miss, Loading };

// The one door to the metadata of tracks. A track is named by its local path or URL, to the letter.
// Thread: any, unless an operation says otherwise.
class IMediaLibManager {
public:
    // Gives the record of a track: from the cache, else from a provider, which reads the file on
    // this thread and whose record is cached for good. `info` is replaced in any case and always
    // holds a title: where none is known, the file name, or the URL itself. 1: the cache or a
    // provider had it, else 0. Waits while the cache is still being loaded.
    virtual int GetMediaInfo(String path, MediaInfo& info) = 0;

    // Merges the keys of `info` into the track's record; other keys keep their values. `notifyMode`
    // is a NotifyMode. Waits while the cache is still being loaded.
    virtual void UpdateMediaInfo(String path, MediaInfo info, int notifyMode) = 0;

    // A pair of object and function that is there already is not added again. A listener with a
    // `life` is no longer called once that has ended, also when the call was under way.
    virtual void AddListener(const MediaLibListener& listener, const LifeWatch& life = {}) = 0;
    virtual void RemoveListener(const MediaLibListener& listener) = 0;

    // Starts with the library files of `directory`, which ends in a separator; they are read on a
    // thread of their own. 1: started. 0: it was started already, and goes on as it was. The
    // calling thread is the main thread from here on. Thread: user interface.
    virtual int Initialize(String directory) = 0;

    // Stops the work under way, as StopWork(5000) does, saves what changed and frees all. Always 1.
    // Thread: user interface.
    virtual int Uninitialize() = 0;

    [[nodiscard]] virtual int IsReady() = 0; // Always 1.

    virtual ~IMediaLibManager() = default;
    virtual void Release() = 0; // Uninitialize, and the end of the object. Thread: user interface.

    // The record as the cache holds it, without the title rule, and without touching a file or
    // waiting. Hit: `info` is replaced. Else it is left alone; Loading: ask again after the call
    // that CallWhenLoaded promises.
    [[nodiscard]] virtual CacheLook PeekMediaInfo(const String& path, MediaInfo& info) = 0;

    // Calls the listener once, with an empty path, when the cache has been loaded: as a deferred
    // event, also when it is loaded already. Dropped when `life` has ended. Thread: user interface.
    virtual void CallWhenLoaded(const MediaLibListener& listener, const LifeWatch& life) = 0;

    // The worker that imports folders and looks rows up, both by priority. Null when not started.
    // Thread: user interface, or a job of the worker itself.
    [[nodiscard]] virtual CWorker* GetWorker() = 0;

    // Asks every job to give up what it holds and waits at most `timeoutMs`. The worker takes no
    // job afterwards. True: it has come to rest, or nothing was started; false: it hangs in the
    // disk and was given up: end the process without freeing the manager. Thread: user interface.
    virtual bool StopWork(int timeoutMs) = 0;
};

// The one manager. GetMediaLibManager creates it at the first call and belongs to the plug-in's
// load; everybody who may come late asks FindMediaLibManager, which is null when there is none.
// Thread: the first call and the last from the user interface; between them any.
[[nodiscard]] IMediaLibManager* GetMediaLibManager();
[[nodiscard]] IMediaLibManager* FindMediaLibManager();
void DestroyMediaLibManager(); // Releases it; harmless without one.

} // namespace kivo::tunehive
