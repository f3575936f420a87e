#include "shell/contracts/common/Language.h"

#include "shell/contracts/common/Text.h"
#include "shell/contracts/framework/Files.h"

namespace kivo::common {
namespace {

constexpr std::size_t kMostTable = std::size_t{4} * 1024 * 1024;

String Unescape(StringView text)
{
    String plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool lineEnd = text.substr(i, 2) == u"\\n";
        plain += lineEnd ? u'\n' : text[i];
        i += lineEnd ? 1 : 0;
    }
    return plain;
}

} // namespace

CMutiLanSupport* CMutiLanSupport::GetInstance()
{
    static CMutiLanSupport instance;
    return &instance;
}

String CMutiLanSupport::GetStringViaID(const String& id) const
{
    const auto found = texts_.find(Trim(id));
    return found != texts_.end() ? found->second : id;
}

bool CMutiLanSupport::AddTable(const String& path)
{
    std::string bytes;
    if (ReadFileBytes(path, bytes, kMostTable) != ReadResult::Read)
        return false;
    for (const String& read : AnalyzeString(utf8_to_CString(bytes), u"\n")) {
        const StringView line =
            read.ends_with(u'\r') ? StringView(read).substr(0, read.size() - 1) : StringView(read);
        const std::size_t equals = line.find(u'=');
        const String id = Trim(line.substr(0, equals)); // A byte order mark goes with the blanks.
        if (equals != StringView::npos && !id.empty() && id[0] != u';' && id[0] != u'[')
            AddText(id, Unescape(line.substr(equals + 1)));
    }
    return true;
}

void CMutiLanSupport::AddText(const String& id, const String& text)
{
    texts_[Trim(id)] = text;
}

void CMutiLanSupport::Clear()
{
    texts_.clear();
}

} // namespace kivo::common
