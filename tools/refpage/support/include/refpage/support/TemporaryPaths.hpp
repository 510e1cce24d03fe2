// The registry of temporary files and folders that an interrupt removes
// (InterruptCleanup.hpp): AtomicFile's new file and OutputFolder's staging folder.
#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>

namespace refpage {

/// What removing a registered path means.
enum class TemporaryKind {
    file,  ///< unlinked
    tree,  ///< removed with everything under it, never following a symlink
};

/// One registered path, unregistered (not removed) when this goes away; move-only.
/// Safe to use from any thread; the registry is one for the whole process.
class TemporaryPath {
public:
    TemporaryPath() noexcept = default;
    TemporaryPath(TemporaryPath&& other) noexcept;
    TemporaryPath& operator=(TemporaryPath&& other) noexcept;
    TemporaryPath(TemporaryPath const&) = delete;
    TemporaryPath& operator=(TemporaryPath const&) = delete;
    ~TemporaryPath();

    /// Runs `create` under the registry's lock and registers the path it returns (an empty
    /// path: nothing was made, nothing registered), so an interrupt finds either nothing
    /// or the registered path. Exceptions of `create` pass through.
    static TemporaryPath create(TemporaryKind kind, std::function<std::filesystem::path()> const& create);

    /// True once an interrupt's cleanup has taken this path (it is removed or being removed).
    bool interrupted() const noexcept;

    /// Runs `step` under the registry's lock, so no cleanup runs during it; false, without
    /// running it, when a cleanup has already taken this path. For renames that move the path.
    bool whileNotInterrupted(std::function<void()> const& step) const;

    /// Unregisters now (the path is gone or is no longer temporary).
    void forget() noexcept;

private:
    std::uint64_t id_ = 0;                             ///< 0: nothing registered
    std::shared_ptr<std::atomic<bool> const> taken_;  ///< set by the cleanup; shared with the registry
};

/// Removes every registered path (marking each interrupted first) and returns how many
/// could not be removed. Holds the registry's lock throughout. Called by the interrupt
/// handler; callable anywhere.
std::size_t removeTemporaryPaths() noexcept;

}  // namespace refpage
