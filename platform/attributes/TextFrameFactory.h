#pragma once

#include <taglib/id3v2framefactory.h>

namespace kivo::attributes {

// TagLib keeps the type of a frame's header to classes of its family, though the factory hands it
// out.
class FrameAccess : public TagLib::ID3v2::Frame {
public:
    using Header = TagLib::ID3v2::Frame::Header;
};

// Makes the five text frames that are shown and leaves the rest raw: no picture is copied, nothing
// is inflated, a text of 256 KB is none, and a tag of a great many frames ends early. One object
// for one tag.
class TextFrameFactory : public TagLib::ID3v2::FrameFactory {
public:
    TextFrameFactory() = default;
    ~TextFrameFactory() override = default;

protected:
    bool updateFrame(FrameAccess::Header* header) const override;

private:
    mutable int framesLeft_ = 2048;
};

} // namespace kivo::attributes
