// Writing of whole files, so that a reader sees the old content or the new and never a part.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace carvelot::platform {

/// A file that is replaced at Commit. Destroyed without Commit it leaves the target as it was.
///
/// An existing target keeps its mode; of a symbolic link the file it points to is replaced. A target that is
/// no regular file (a device, a pipe) is written directly. Where no temporary file may be made beside a
/// target that can itself be written, the content is collected and written at Commit; not where there is only
/// no room for one, for then there is none for the content.
class AtomicFile {
public:
    AtomicFile() noexcept;
    AtomicFile(AtomicFile&& other) noexcept;
    AtomicFile& operator=(AtomicFile&& other) noexcept;
    ~AtomicFile();

    /// `error` receives the system's error number when the file can't be made.
    static AtomicFile Create(const std::string& path, int* error = nullptr);

    explicit operator bool() const { return m_pState != nullptr; }
    /// A failure is also remembered: Commit fails then.
    bool Write(std::string_view bytes);
    /// Leaves the writing to a library that opens files itself: gives the path of the new file, which it must
    /// have closed ahead of Commit. Empty where the target can only be written in place; then nothing was
    /// left.
    std::string LeaveToOther();
    /// Ends the writing. False, with the target as it was, if anything failed, the closing of the file
    /// included.
    bool Commit(int* error = nullptr);

private:
    struct State;
    std::unique_ptr<State> m_pState;
};

} // namespace carvelot::platform
