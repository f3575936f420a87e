#include "fuzz/Fuzz.h"
#include "shell/contracts/base/Pack.h"
#include "shell/contracts/base/PackError.h"
#include "shell/contracts/base/Property.h"
#include "shell/contracts/base/Unpack.h"

#include <memory>

// A record as it comes from the network; what was read is written and read again unchanged.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count)
{
    kivo::Property record;
    kivo::Unpack unpack(bytes, count);
    try {
        record.unmarshal(unpack);
    } catch (kivo::UnpackError* error) {
        const std::unique_ptr<kivo::UnpackError> owned(error);
    }

    kivo::PackBuffer buffer;
    kivo::Pack pack(buffer);
    record.marshal(pack);
    kivo::Unpack again(buffer.data(), buffer.size());
    kivo::Property copy;
    copy.unmarshal(again);
    kivo::fuzz::Require(again.GetLeft() == 0 && copy.GetEntries() == record.GetEntries());
    return 0;
}
