#pragma once

#include "shell/contracts/base/Export.h"
#include "shell/contracts/base/String.h"

#include <memory>

class TiXmlNode;
class TiXmlDocument;

namespace kivo::common {

// Reads an XML file of somebody else's (playlists). Bounded in size, nesting and attributes.
// Look-ups ignore the case of names. Thread: any, one object on one thread at a time.
class KIVO_API CXmlDocument {
public:
    CXmlDocument();
    CXmlDocument(const CXmlDocument&) = delete;
    CXmlDocument& operator=(const CXmlDocument&) = delete;
    ~CXmlDocument();

    // Bare ampersands are taken as text and element names in any letter case as one name. False:
    // can't be read.
    bool LoadFile(const String& path);

    // The node at a path of names from the root, separated by '/'. Null: there is none.
    [[nodiscard]] const TiXmlNode* PathWalk(const String& path) const;

    [[nodiscard]] static String GetNodeText(const TiXmlNode* node);
    [[nodiscard]] static String GetNodeAttribute(const TiXmlNode* node,
                                                 const String& name); // Empty: absent.

private:
    std::unique_ptr<TiXmlDocument> document_;
};

} // namespace kivo::common
