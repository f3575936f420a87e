#pragma once

#include "shell/contracts/base/LifeToken.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <vector>

namespace kivo {

// An object and a member function of it, taken together: callable, and equal when both are equal.
// It owns nothing and doesn't notice the object's end. Two empty delegates are equal.
template <class... Args>
class Delegate {
public:
    Delegate() = default;

    // `object` is borrowed and outlives each call. Any result of the function is dropped.
    template <class T, class Base, class R>
    Delegate(T* object, R (Base::*function)(Args...))
        : object_(static_cast<Base*>(object))
        , call_([](void* target, const Bytes& bytes, Args... args) {
            R (Base::*member)(Args...) = nullptr;
            std::memcpy(&member, bytes.data(), sizeof member);
            static_cast<void>((static_cast<Base*>(target)->*member)(static_cast<Args>(args)...));
        })
    {
        static_assert(sizeof function <= sizeof(Bytes));
        std::memcpy(function_.data(), &function, sizeof function);
        isSet_ = object != nullptr || function != nullptr;
    }

    [[nodiscard]] bool IsSet() const { return isSet_; }
    [[nodiscard]] const void* GetObject() const { return object_; }

    // Nothing happens without an object.
    void operator()(Args... args) const
    {
        if (object_ != nullptr && call_ != nullptr)
            call_(object_, function_, static_cast<Args>(args)...);
    }

    friend bool operator==(const Delegate& a, const Delegate& b)
    {
        return a.object_ == b.object_ && a.call_ == b.call_ && a.function_ == b.function_;
    }

private:
    using Bytes = std::array<std::byte, 2 * sizeof(void*)>;

    void* object_ = nullptr;
    void (*call_)(void*, const Bytes&, Args...) = nullptr;
    Bytes function_{};
    bool isSet_ = false;
};

template <class Arg>
using FastDelegate1 = Delegate<Arg>;

// Listeners in order of addition, without doubles. A call reaches those that stood in the list when
// it began and still do when their turn comes.
template <class... Args>
class DelegateList {
public:
    void Add(const Delegate<Args...>& listener)
    {
        if (std::find(listeners_.begin(), listeners_.end(), listener) == listeners_.end())
            listeners_.push_back(listener);
    }

    void Remove(const Delegate<Args...>& listener)
    {
        const auto found = std::find(listeners_.begin(), listeners_.end(), listener);
        if (found != listeners_.end())
            listeners_.erase(found);
    }

    void Clear() { listeners_.clear(); }

    // Calls each listener. A listener may add or remove listeners, or destroy the list with its
    // owner: the rest is then not called.
    void Notify(Args... args) const
    {
        const LifeWatch life = life_.Watch();
        const auto listeners = listeners_;
        for (const auto& listener : listeners) {
            if (!life.IsAlive())
                return;
            if (std::find(listeners_.begin(), listeners_.end(), listener) != listeners_.end())
                listener(args...);
        }
    }
    [[nodiscard]] const std::vector<Delegate<Args...>>& GetAll() const { return listeners_; }

private:
    std::vector<Delegate<Args...>> listeners_;
    LifeToken life_;
};

} // namespace kivo
