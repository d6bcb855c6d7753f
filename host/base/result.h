#pragma once

#include <cassert>
#include <concepts>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>

namespace cad {

/// Why something did not work: where (a path, "plan.dxf:1042", an object; may be empty) and what.
struct Error {
  std::string where;
  std::string what;

  /// One line for a person: "where: what", or only what when nothing is known of the place.
  std::string message() const { return where.empty() ? what : where + ": " + what; }

  friend bool operator==(const Error&, const Error&) = default;
};

/// `return fail(path, "is not a drawing");` in any function that answers a Result.
inline Error fail(std::string where, std::string what) {
  return Error{std::move(where), std::move(what)};
}

/// A value, or the reason why there is none.
///     Result<MappedFile> file = MappedFile::open(path);
///     if (!file) return file.error();
///     scan(file->bytes());
/// value(), * and -> want a value, error() wants a failure; asking the wrong one is a mistake of
/// the caller and asserts.
template <class T>
class [[nodiscard]] Result {
  static_assert(!std::same_as<std::remove_cv_t<T>, Error>, "an Error is never a value");

 public:
  using value_type = T;

  Result(T value) : state_(std::in_place_index<0>, std::move(value)) {}
  Result(Error error) : state_(std::in_place_index<1>, std::move(error)) {}
  /// From whatever becomes a T without a cast: a derived pointer, a literal.
  template <class U>
  requires(std::convertible_to<U, T> && !std::same_as<std::remove_cvref_t<U>, T> &&
           !std::same_as<std::remove_cvref_t<U>, Error> &&
           !std::same_as<std::remove_cvref_t<U>, Result>) Result(U&& value)
      : state_(std::in_place_index<0>, std::forward<U>(value)) {}

  explicit operator bool() const { return state_.index() == 0; }

  T& value() & { return *get(); }
  const T& value() const& { return *get(); }
  T&& value() && { return std::move(*get()); }
  T& operator*() & { return *get(); }
  const T& operator*() const& { return *get(); }
  T&& operator*() && { return std::move(*get()); }
  T* operator->() { return get(); }
  const T* operator->() const { return get(); }

  const Error& error() const {
    assert(state_.index() == 1);
    return *std::get_if<1>(&state_);
  }

 private:
  T* get() {
    assert(state_.index() == 0);
    return std::get_if<0>(&state_);
  }
  const T* get() const {
    assert(state_.index() == 0);
    return std::get_if<0>(&state_);
  }

  std::variant<T, Error> state_;
};

/// Done, or the reason why not. `return {};` is success.
template <>
class [[nodiscard]] Result<void> {
 public:
  using value_type = void;

  Result() = default;
  Result(Error error) : error_(std::make_unique<Error>(std::move(error))) {}
  Result(Result&&) noexcept = default;
  Result& operator=(Result&&) noexcept = default;
  Result(const Result& other) : error_(other ? nullptr : new Error(other.error())) {}
  Result& operator=(const Result& other) { return *this = Result(other); }

  explicit operator bool() const { return !error_; }

  const Error& error() const {
    assert(error_);
    return *error_;
  }

 private:
  std::unique_ptr<Error> error_;  // success is returned on hot paths and costs one word
};

using Status = Result<void>;

}  // namespace cad
