#include "fuzz/Fuzz.h"
#include "shell/base/XmlRecords.h"

// A file of ours that somebody else has written. The root's name is that of the groups' files.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count)
{
    std::size_t length = 0;
    kivo::tunehive::XmlProlog prolog;
    const auto take = [&length](const kivo::tunehive::XmlRecord& record) {
        length += kivo::tunehive::GetAttribute(record, "PATH").size();
        length += kivo::tunehive::GetAttribute(record, "name").size();
    };
    const kivo::tunehive::XmlResult result = kivo::tunehive::ParseXmlRecords(
        std::string(kivo::fuzz::AsText(bytes, count)), "Items", prolog, take);
    kivo::fuzz::Require(result != kivo::tunehive::XmlResult::Missing);
    kivo::fuzz::Require((result == kivo::tunehive::XmlResult::Empty) == (count == 0));
    return 0;
}
