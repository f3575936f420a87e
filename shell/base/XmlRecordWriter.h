#pragma once

#include "shell/base/XmlRecords.h"
#include "shell/contracts/framework/Files.h"

#include <initializer_list>
#include <string>

namespace kivo::tunehive {

// Writes a file of records anew, all or nothing, in UTF-8 and byte for byte as TiXmlDocument would
// save it. Thread: any.
class XmlRecordWriter {
public:
    XmlRecordWriter(const String& path, const char* root);

    // The names are XML names, the values any bytes.
    void Write(std::string_view name, std::span<const XmlAttribute> attributes);
    void Write(std::string_view name, std::initializer_list<XmlAttribute> attributes)
    {
        Write(name, {attributes.begin(), attributes.size()});
    }
    [[nodiscard]] bool Commit(); // True: the file holds what was written.

private:
    void AppendValue(std::string_view value);

    CDurableFile file_;
    std::string root_;
    bool isEmpty_ = true;
    std::string buffer_;
};

} // namespace kivo::tunehive
