#include "shell/contracts/framework/FileFind.h"

#include "platform/base/Descriptor.h"
#include "platform/base/FolderListing.h"
#include "shell/contracts/common/Text.h"

#include <sys/stat.h>

#include <cstdint>
#include <deque>
#include <set>
#include <vector>

namespace kivo {
namespace {

// '*' is any run of characters, '?' one. Goes back to the last '*' alone, so that no pattern costs
// more than its length times the name's.
bool Fits(StringView name, StringView pattern)
{
    std::size_t n = 0;
    std::size_t p = 0;
    std::size_t star = StringView::npos;
    std::size_t afterStar = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == u'*') {
            star = p++;
            afterStar = n;
        } else if (p < pattern.size() && (pattern[p] == u'?' || pattern[p] == name[n])) {
            ++p;
            ++n;
        } else if (star != StringView::npos) {
            p = star + 1;
            n = ++afterStar;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of(u'*', p) == StringView::npos;
}

struct FolderVisits final : IFolderFilter {
    bool Enter(FolderIdentity folder) override { return entered.insert(folder).second; }

    std::set<FolderIdentity> entered;
};

} // namespace

struct CFileFind::Impl {
    std::string folder; // Ends in a separator, or is empty.
    std::vector<FolderEntry> matches;
    std::size_t next = 0; // Behind the current match.

    [[nodiscard]] const FolderEntry* Current() const
    {
        return next == 0 ? nullptr : &matches[next - 1];
    }
    void FindOne(const std::string& path);
    void FindMany(StringView pattern);
};

void CFileFind::Impl::FindOne(const std::string& path)
{
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0)
        return;
    EntryKind kind = EntryKind::Other;
    if (S_ISREG(status.st_mode))
        kind = EntryKind::File;
    else if (S_ISDIR(status.st_mode))
        kind = EntryKind::Folder;
    matches.push_back({NameOf(path), kind});
}

void CFileFind::Impl::FindMany(StringView pattern)
{
    if (pattern == u"*.*")
        pattern = u"*";
    for (FolderEntry& entry : ListFolder(folder.empty() ? "." : folder))
        if (Fits(common::PathToText(entry.name), pattern))
            matches.push_back(std::move(entry));
}

CFileFind::CFileFind()
    : impl_(std::make_unique<Impl>())
{
}

CFileFind::~CFileFind() = default;

int CFileFind::FindFile(const String& pattern)
{
    *impl_ = {};
    const auto native = NativePath(pattern);
    if (!native || native->empty())
        return 0;
    impl_->folder = native->substr(0, native->rfind('/') + 1);
    const StringView name = StringView(pattern).substr(pattern.rfind(u'/') + 1);
    if (name.find_first_of(u"*?") == StringView::npos)
        impl_->FindOne(*native);
    else
        impl_->FindMany(name);
    return impl_->matches.empty() ? 0 : 1;
}

int CFileFind::FindNextFile()
{
    if (impl_->next < impl_->matches.size())
        ++impl_->next;
    return impl_->next < impl_->matches.size() ? 1 : 0;
}

String CFileFind::GetFileName() const
{
    const FolderEntry* current = impl_->Current();
    return current != nullptr ? common::PathToText(current->name) : String();
}

String CFileFind::GetFilePath() const
{
    const FolderEntry* current = impl_->Current();
    return current != nullptr ? common::PathToText(impl_->folder + current->name) : String();
}

bool CFileFind::IsDirectory() const
{
    const FolderEntry* current = impl_->Current();
    return current != nullptr && current->kind == EntryKind::Folder;
}

bool CFileFind::IsDots() const
{
    const FolderEntry* current = impl_->Current();
    return current != nullptr && (current->name == "." || current->name == "..");
}

bool CFileFind::IsRegular() const
{
    const FolderEntry* current = impl_->Current();
    return current != nullptr && current->kind == EntryKind::File;
}

void WalkFolder(const String& folder, IFolderVisitor& visitor)
{
    const auto native = NativePath(folder);
    if (!native || native->empty())
        return;
    FolderVisits visits;
    std::deque<std::string> waiting{*native};
    while (!waiting.empty() && visitor.GoesOn()) {
        const std::string current = std::move(waiting.front());
        waiting.pop_front();
        for (const FolderEntry& entry : ListFolder(current, &visits)) {
            if (entry.kind == EntryKind::File)
                visitor.OnFile(common::PathToText(JoinPath(current, entry.name)));
            else if (entry.kind == EntryKind::Folder)
                waiting.push_back(JoinPath(current, entry.name));
        }
    }
}

} // namespace kivo
