#include "host/SettingWatches.h"

#include <algorithm>

namespace kivo::host {

void SettingWatches::Add(void* watcher, const SettingDelegate& delegate, const String& key)
{
    Watch watch{watcher, delegate, key};
    if (!Has(watch))
        watches_.push_back(std::move(watch));
}

void SettingWatches::Remove(void* watcher)
{
    std::erase_if(watches_, [watcher](const Watch& watch) { return watch.watcher == watcher; });
}

void SettingWatches::Notify(const String& key)
{
    const std::vector<Watch> watches = watches_;
    for (const Watch& watch : watches) {
        if (watch.key == key && Has(watch))
            watch.delegate(key, 0, 0, 0);
    }
}

bool SettingWatches::Has(const Watch& watch) const
{
    return std::find(watches_.begin(), watches_.end(), watch) != watches_.end();
}

} // namespace kivo::host
