/// A callable passed down a call, without owning or copying it.
///
/// For parameters of functions that call back while they run; never store one: it refers to the
/// caller's object.
#pragma once

#include <memory>
#include <type_traits>
#include <utility>

namespace kestrel {

template <typename Signature>
class FunctionRef;

template <typename Result, typename... Arguments>
class FunctionRef<Result(Arguments...)> {
 public:
  template <typename Callable>
  requires(!std::is_same_v<std::remove_cvref_t<Callable>, FunctionRef> &&
           std::is_object_v<std::remove_reference_t<Callable>> &&
           std::is_invocable_r_v<Result, Callable&, Arguments...>) FunctionRef(Callable&& callable)
  noexcept
      : object_(const_cast<void*>(static_cast<const void*>(std::addressof(callable)))),
        call_([](void* object, Arguments... arguments) -> Result {
          return (*static_cast<std::remove_reference_t<Callable>*>(object))(
              std::forward<Arguments>(arguments)...);
        }) {}

  Result operator()(Arguments... arguments) const {
    return call_(object_, std::forward<Arguments>(arguments)...);
  }

 private:
  void* object_;
  Result (*call_)(void*, Arguments...);
};

}  // namespace kestrel
