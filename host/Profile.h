#pragma once

#include <string>

// The user's own directory: where settings, groups and library lie.
// Paths are bytes. Thread: user interface.
namespace kivo::host {

// The name under which the user is signed in to the machine; "user" when it has none.
[[nodiscard]] std::string GetLocalUserName();

// "$XDG_DATA_HOME/kivo/<user>", without a separator at the end.
[[nodiscard]] std::string GetDefaultProfile();

enum class ProfileState {
    Ours,  // Locked until the object is gone.
    InUse, // Another program has it.
    Failed // It can't be made or opened; see GetError.
};

// Makes the directory, for the user's eyes alone, and holds a lock on it, so that two programs
// never write the same files. Where the file system has no locks it goes on without.
class ProfileLock {
public:
    explicit ProfileLock(const std::string& folder);
    ProfileLock(const ProfileLock&) = delete;
    ProfileLock& operator=(const ProfileLock&) = delete;
    ~ProfileLock();

    [[nodiscard]] ProfileState GetState() const { return state_; }
    [[nodiscard]] const std::string& GetError() const { return error_; } // In plain words.

private:
    int descriptor_ = -1;
    ProfileState state_ = ProfileState::Failed;
    std::string error_;
};

// Brings back what an interrupted run set aside, in the profile and two levels of folders below.
void RestoreProfile(const std::string& folder);

} // namespace kivo::host
