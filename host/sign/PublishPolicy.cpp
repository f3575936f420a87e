#include "host/sign/PublishPolicy.h"

#include <algorithm>
#include <utility>

namespace kivo::host {

void PublishPolicy::Want(const Tune& tune, Time now)
{
    if (tune == wanted_)
        return;
    wanted_ = tune;
    changed_ = now;
    isUrgent_ = false;
    fatal_ = 0;
}

void PublishPolicy::Withdraw(Time now)
{
    Want({}, now);
    isUrgent_ = true;
}

void PublishPolicy::OnOnline(bool isClear)
{
    isOnline_ = true;
    published_.reset();
    if (isClear)
        published_.emplace();
}

void PublishPolicy::OnOrderlyEnd()
{
    isOnline_ = false;
}

void PublishPolicy::OnStreamEnd(Time now)
{
    const bool wasOnline = std::exchange(isOnline_, false);
    if (!wasOnline || IsEmpty(wanted_) || published_ != wanted_)
        return;
    const bool isFatal = publishedAt_ && now - *publishedAt_ <= kFatal;
    fatal_ = isFatal ? fatal_ + 1 : 0;
    if (fatal_ >= kMaxFatal)
        Want({}, now);
}

std::optional<PublishPolicy::Time> PublishPolicy::GetDue() const
{
    if (!isOnline_ || published_ == wanted_)
        return std::nullopt;
    if (isUrgent_)
        return changed_;
    const Time due = changed_ + kQuiet;
    return publishedAt_ ? std::max(due, *publishedAt_ + kFloor) : due;
}

std::optional<Tune> PublishPolicy::Take(Time now)
{
    const std::optional<Time> due = GetDue();
    if (!due || *due > now)
        return std::nullopt;
    const bool isClearing = !published_ && IsEmpty(wanted_);
    published_ = wanted_;
    if (!isClearing)
        publishedAt_ = now;
    isUrgent_ = false;
    return wanted_;
}

bool PublishPolicy::IsOut() const
{
    return isOnline_ && !(published_ && IsEmpty(*published_));
}

} // namespace kivo::host
