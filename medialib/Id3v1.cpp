#include "medialib/Id3v1.h"

#include "shell/contracts/common/Text.h"

#include <array>

namespace kivo::tunehive {

namespace {

// Spelled as players have spelled them since the tag came up.
constexpr std::array<StringView, 148> kGenres = {
    u"Blues",
    u"Classic Rock",
    u"Country",
    u"Dance",
    u"Disco",
    u"Funk",
    u"Grunge",
    u"Hip-Hop",
    u"Jazz",
    u"Metal",
    u"New Age",
    u"Oldies",
    u"Other",
    u"Pop",
    u"R&B",
    u"Rap",
    u"Reggae",
    u"Rock",
    u"Techno",
    u"Industrial",
    u"Alternative",
    u"Ska",
    u"Death Metal",
    u"Pranks",
    u"Soundtrack",
    u"Euro-Techno",
    u"Ambient",
    u"Trip Hop",
    u"Vocal",
    u"Jazz Funk",
    u"Fusion",
    u"Trance",
    u"Classical",
    u"Instrumental",
    u"Acid",
    u"House",
    u"Game",
    u"Sound Clip",
    u"Gospel",
    u"Noise",
    u"Alternative Rock",
    u"Bass",
    u"Soul",
    u"Punk",
    u"Space",
    u"Meditative",
    u"Instrumental Pop",
    u"Instrumental Rock",
    u"Ethnic",
    u"Gothic",
    u"Darkwave",
    u"Techno-Industrial",
    u"Electronic",
    u"Pop Folk",
    u"Eurodance",
    u"Dream",
    u"Southern Rock",
    u"Comedy",
    u"Cult",
    u"Gangsta",
    u"Top 40",
    u"Christian Rap",
    u"Pop Funk",
    u"Jungle",
    u"Native American",
    u"Cabaret",
    u"New Wave",
    u"Psychadelic",
    u"Rave",
    u"ShowTunes",
    u"Trailer",
    u"Lo-Fi",
    u"Tribal",
    u"Acid Punk",
    u"Acid Jazz",
    u"Polka",
    u"Retro",
    u"Musical",
    u"Rock & Roll",
    u"Hard Rock",
    u"Folk",
    u"Folk Rock",
    u"National Folk",
    u"Swing",
    u"Fast Fusion",
    u"Bebob",
    u"Latin",
    u"Revival",
    u"Celtic",
    u"Bluegrass",
    u"Avantgarde",
    u"Gothic Rock",
    u"Progressive Rock",
    u"Psychedelic Rock",
    u"Symphonic Rock",
    u"Slow Rock",
    u"Big Band",
    u"Chorus",
    u"Easy Listening",
    u"Acoustic",
    u"Humour",
    u"Speech",
    u"Chanson",
    u"Opera",
    u"Chamber Music",
    u"Sonata",
    u"Symphony",
    u"Booty Bass",
    u"Primus",
    u"Porn Groove",
    u"Satire",
    u"Slow Jam",
    u"Club",
    u"Tango",
    u"Samba",
    u"Folklore",
    u"Ballad",
    u"Power Ballad",
    u"Rhytmic Soul",
    u"Freestyle",
    u"Duet",
    u"Punk Rock",
    u"Drum Solo",
    u"A Capella",
    u"Euro House",
    u"Dance Hall",
    u"Goa",
    u"Drum & Bass",
    u"Club House",
    u"Hardcore",
    u"Terror",
    u"Indie",
    u"BritPop",
    u"Negerpunk",
    u"Polsk Punk",
    u"Beat",
    u"Christian Gangsta Rap",
    u"Heavy Metal",
    u"Black Metal",
    u"Crossover",
    u"Contemporary Christian",
    u"Christian Rock",
    u"Merengue",
    u"Salsa",
    u"Trash Metal",
    u"Anime",
    u"JPop",
    u"SynthPop",
};

// Offset and size of each field in the tag.
struct Field {
    std::size_t offset;
    std::size_t size;
};
constexpr Field kTitle = {3, 30};
constexpr Field kArtist = {33, 30};
constexpr Field kAlbum = {63, 30};
constexpr Field kYear = {93, 4};
constexpr Field kComment = {97, 30};
constexpr Field kShortComment = {97, 28};
constexpr std::size_t kTrackMark = 125; // A zero here: the next byte is a track number.
constexpr std::size_t kGenre = 127;

String ReadField(std::string_view tag, const Field& field)
{
    const std::string_view bytes = tag.substr(field.offset, field.size);
    return common::MBCS2CString(bytes.substr(0, bytes.find('\0')), 0);
}

} // namespace

std::optional<Id3v1Tag> ParseId3v1(std::string_view bytes)
{
    if (bytes.size() != kId3v1Size || !bytes.starts_with("TAG"))
        return std::nullopt;
    Id3v1Tag tag;
    tag.title = ReadField(bytes, kTitle);
    tag.artist = ReadField(bytes, kArtist);
    tag.album = ReadField(bytes, kAlbum);
    tag.year = ReadField(bytes, kYear);
    tag.comment = ReadField(bytes, bytes[kTrackMark] == '\0' ? kShortComment : kComment);
    tag.genre = static_cast<unsigned char>(bytes[kGenre]);
    return tag;
}

StringView GetGenreName(int genre)
{
    const auto index = static_cast<std::size_t>(genre);
    return genre >= 0 && index < kGenres.size() ? kGenres[index] : StringView();
}

} // namespace kivo::tunehive
