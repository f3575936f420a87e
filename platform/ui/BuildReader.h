#pragma once

#include "shell/contracts/base/String.h"

#include <memory>
#include <string>

class TiXmlElement;
class TiXmlNode;

namespace kivo::ui {

class CSkinObject;

// Makes controls from the elements of a build file: `panel button label edit combo slider photo
// splitter list browser`. Attributes of all: `id dock bounds width height min-width min-height
// margin padding gap visible text tip name skin picture`; of a label `buddy multiline align`, of a
// slider `vertical`, of an edit `password`. A control with a window of its own gets its peer by its
// Create, all others here.
class BuildReader {
public:
    // Applies the node's attributes to the object, makes its controls, and gives each its first
    // bounds. What isn't in the vocabulary is passed over and noted as a fault.
    static void Build(CSkinObject& object, const TiXmlNode& node);

private:
    static void Apply(CSkinObject& object, const TiXmlElement& element);
    static bool ApplyOwn(CSkinObject& object, const std::string& name, const std::string& value);
    static bool ApplyPlace(CSkinObject& object, const std::string& name, const std::string& value);
    static bool ApplyText(CSkinObject& object, const std::string& name, const std::string& value);
    static bool ApplyKind(CSkinObject& object, const std::string& name, const std::string& value);
    static void MakeControls(CSkinObject& parent, const TiXmlElement& element);
    static void NameBuddies(CSkinObject& root, const CSkinObject& parent);
    static void Note(const std::string& fault);
};

} // namespace kivo::ui
