#include <fcntl.h>

#include <mutex>
#include <refpage/support/FileDescriptor.hpp>
#include <refpage/support/TemporaryPaths.hpp>
#include <unordered_map>

#include <refpage/support/Beneath.hpp>

namespace refpage {

namespace {

struct Entry {
    std::filesystem::path path;
    TemporaryKind kind;
    std::shared_ptr<std::atomic<bool>> taken;
};

struct Registry {
    std::mutex mutex;
    std::unordered_map<std::uint64_t, Entry> entries;
    std::uint64_t next = 1;
};

/// Never destroyed, so that an interrupt during exit still finds it.
Registry& registry() {
    static Registry* const instance = new Registry;
    return *instance;
}

bool removePath(Entry const& entry) noexcept {
    std::filesystem::path const folder = entry.path.has_parent_path() ? entry.path.parent_path() : ".";
    FileDescriptor const parent(::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!parent) return false;
    std::string const name = entry.path.filename().string();
    if (entry.kind == TemporaryKind::file) return ::unlinkat(parent.get(), name.c_str(), 0) == 0 || errno == ENOENT;
    return beneath::removeTree(parent.get(), name) == 0;
}

}  // namespace

TemporaryPath::TemporaryPath(TemporaryPath&& other) noexcept
    : id_(std::exchange(other.id_, 0)), taken_(std::move(other.taken_)) {}

TemporaryPath& TemporaryPath::operator=(TemporaryPath&& other) noexcept {
    if (this != &other) {
        forget();
        id_ = std::exchange(other.id_, 0);
        taken_ = std::move(other.taken_);
    }
    return *this;
}

TemporaryPath::~TemporaryPath() {
    forget();
}

TemporaryPath TemporaryPath::create(TemporaryKind kind, std::function<std::filesystem::path()> const& create) {
    Registry& all = registry();
    std::lock_guard const lock(all.mutex);
    std::filesystem::path path = create();
    TemporaryPath registered;
    if (path.empty()) return registered;
    auto taken = std::make_shared<std::atomic<bool>>(false);
    registered.id_ = all.next++;
    registered.taken_ = taken;
    all.entries.emplace(registered.id_, Entry{std::move(path), kind, std::move(taken)});
    return registered;
}

bool TemporaryPath::interrupted() const noexcept {
    return taken_ && taken_->load();
}

bool TemporaryPath::whileNotInterrupted(std::function<void()> const& step) const {
    std::lock_guard const lock(registry().mutex);
    if (interrupted()) return false;
    step();
    return true;
}

void TemporaryPath::forget() noexcept {
    if (id_ == 0) return;
    Registry& all = registry();
    std::lock_guard const lock(all.mutex);
    all.entries.erase(id_);
    id_ = 0;
}

std::size_t removeTemporaryPaths() noexcept {
    Registry& all = registry();
    std::lock_guard const lock(all.mutex);
    for (auto& [id, entry] : all.entries) entry.taken->store(true);
    std::size_t failed = 0;
    for (auto const& [id, entry] : all.entries) failed += removePath(entry) ? 0 : 1;
    all.entries.clear();
    return failed;
}

}  // namespace refpage
