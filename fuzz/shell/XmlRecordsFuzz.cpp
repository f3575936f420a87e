#include "fuzz/Fuzz.h"
#include "shell/base/XmlRecords.h"

// A file of ours that somebody else has written. The root's name is that of the groups' files.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count)
{
    using namespace kivo;
    std::size_t length = 0;
    tunehive::XmlProlog prolog;
    const auto take = [&length](const TiXmlElement& element) {
        length += tunehive::GetAttribute(element, "PATH").size();
        length += tunehive::GetAttribute(element, "name").size();
    };
    const tunehive::XmlResult result =
        tunehive::ParseXmlRecords(std::string(fuzz::AsText(bytes, count)), "Items", prolog, take);
    fuzz::Require(result != tunehive::XmlResult::Missing);
    fuzz::Require((result == tunehive::XmlResult::Empty) == (count == 0));
    return 0;
}
