#pragma once

#include "shell/contracts/base/Delegate.h"
#include "shell/contracts/base/SDKEvent.h"
#include "shell/contracts/base/String.h"

#include <cstdint>

// The services of the host, exported by KVLibExport.so under these very names. What stands here are
// the plug-in's wrappers: each looks its name up at every call and gives 0 without the library or
// the name (see shell/base/HostLibrary.h). Where nothing else is said, a result other than 0 says
// that the host took the call. Texts and records are borrowed for the call alone, windows and
// plug-ins until they are taken back; texts pass as pointers to the string object, and null is
// refused unless it is said to be allowed. Thread: user interface, but for _KivoAPI_PostSDKEvent.
namespace kivo {

class IPlugin;
class IPluginWindow;
class Property;

// What a watch calls: the key of the setting that changed, and three words without a meaning here.
using SettingDelegate = Delegate<const String&, int, int, int>;

int _KivoAPI_RegisterPluginWindow(IPluginWindow* window);   // Non-zero: accepted.
int _KivoAPI_UnregisterPluginWindow(IPluginWindow* window); // Result without meaning.

// Shows contacts what plays: `kind` is "music" or "video". The record is copied.
int _KivoAPI_PluginSetStateSign(IPlugin* plugin,
                                const String* kind,
                                const String* title,
                                const Property* sign);
int _KivoAPI_PluginRemoveStateSign(IPlugin* plugin);
int _KivoAPI_IsShowMediaState(); // Non-zero: the user lets contacts see it.

int _KivoAPI_GetMyUid(String* uid); // The own id: the account's, else the user's name here.
int _KivoAPI_GetMyDir(
    String* directory); // Non-zero: the user's data directory, ending in a separator.

// Gives the event away; the host runs and frees it on the user-interface thread. Without the
// library it is freed at once, unrun. Thread: any.
int _KivoAPI_PostSDKEvent(ISDKEvent* event);

// The delegate, which is copied, runs when the setting of that key changes, until Revoke. `watcher`
// is only a name for the pair; `filter` and `always` have no effect.
int _KivoAPI_Watch(void* watcher,
                   const SettingDelegate* delegate,
                   const String* key,
                   const String* filter,
                   int always);
int _KivoAPI_Revoke(void* watcher); // Ends all watches of that name.

// The library whose texts and boxes are asked for. The host does nothing.
int _RegisterMsgInstance(void* instance);
int _UnRegisterMsgInstance(void* instance);

// The text in the user's language; the id itself if there is none. Untouched without the library.
int _GetStringViaID(const String* id, String* text);

// A modal box. `code`: 41 a notice, 42 a question, 43 an error; `style`: 1 OK alone, 2 yes and no;
// `*result` becomes 1 when it was confirmed, else 0. `result` may be null.
int _ShowMsgBox(
    int code, const String* title, const String* message, int style, int* result, int reserved);

int _KivoAPI_STAT_TAG_INCREASE(const int* tag); // Counts a use.

} // namespace kivo
