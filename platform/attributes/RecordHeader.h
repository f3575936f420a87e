#pragma once

#include "platform/attributes/AttributeRecord.h"
#include "shell/contracts/control/MediaAttributes.h"

namespace kivo::attributes {

// A record as the header of a file or stream.
class RecordHeader : public IWMHeaderInfo3 {
public:
    explicit RecordHeader(AttributeRecord record);
    virtual ~RecordHeader() = default;

    HRESULT GetAttributeByName(std::uint16_t stream,
                               const char16_t* name,
                               std::uint8_t* value,
                               std::uint16_t* length) override;

private:
    AttributeRecord record_;
};

} // namespace kivo::attributes
