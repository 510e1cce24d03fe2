// A callable borrowed for the length of one call: like std::function but never owning,
// never allocating, so that passing work to a pool or a visitor to a loader costs nothing
// and cannot run out of memory.
#pragma once

#include <memory>
#include <type_traits>
#include <utility>

namespace refpage {

template <class Signature>
class FunctionRef;

template <class Result, class... Args>
class FunctionRef<Result(Args...)> {
public:
    /// Refers to `callable`, which must outlive every call through this reference.
    template <class Callable>
        requires(!std::is_same_v<std::remove_cvref_t<Callable>, FunctionRef> &&
                 std::is_invocable_r_v<Result, Callable&, Args...>)
    FunctionRef(Callable&& callable) noexcept  // NOLINT(google-explicit-constructor): stands in for a callable
        : object_(const_cast<void*>(static_cast<void const*>(std::addressof(callable)))),
          call_([](void* object, Args... args) -> Result {
              return (*static_cast<std::remove_reference_t<Callable>*>(object))(std::forward<Args>(args)...);
          }) {}

    Result operator()(Args... args) const { return call_(object_, std::forward<Args>(args)...); }

private:
    void* object_;                       ///< the callable, borrowed
    Result (*call_)(void*, Args...);     ///< calls it with its type restored
};

}  // namespace refpage
