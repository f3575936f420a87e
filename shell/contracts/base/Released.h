#pragma once

#include <memory>

namespace kivo {

// Frees through the object's own Release, the way every object is freed that crosses a contract.
struct ReleaseDeleter {
    template <class T>
    void operator()(T* object) const
    {
        object->Release();
    }
};

template <class T>
using Released = std::unique_ptr<T, ReleaseDeleter>;

} // namespace kivo
