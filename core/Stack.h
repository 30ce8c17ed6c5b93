// A stack.
#pragma once

#include "core/Failure.h"
#include "core/List.h"

namespace korb {

/// A List whose tail is the top. keep_first(n), like keep_last(n), keeps the newest `n`.
template <class T>
class Stack : public List<T> {
public:
  constexpr Stack() : List<T>(TheStackForm) {}
  Stack(const Stack &other) : Stack() { this->append_all(other); }
  Stack(Stack &&other) noexcept : Stack() { this->take_over(other); }
  Stack &operator=(const Stack &) = default;
  Stack &operator=(Stack &&) noexcept = default;

  void push(const T &value) { this->append(value); }

  /// Removes the newest element and returns it. Fatal when empty.
  T pop() {
    if (this->count < 1)
      FatalFormat("Stack<%s>::pop", TypeName<T>);
    T top(*this->last_value());
    this->remove_last();
    return top;
  }

  /// Removes the newest element. Fatal when empty.
  void discard_top() {
    if (this->count < 1)
      FatalFormat("Stack<%s>::discard_top", TypeName<T>);
    this->remove_last();
  }
};

} // namespace korb
