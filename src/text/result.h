#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <variant>

namespace quill {

/// The reason for a failure, as far as a caller may want to act on it.
enum class ErrorCode {
    not_found,    ///< The named file or directory does not exist.
    exists,       ///< The output's name is taken and must not be replaced.
    access,       ///< The system refused: permissions, a read-only medium, a path that is not a directory.
    no_space,     ///< The disk or the user's quota is full.
    io,           ///< Reading or writing failed for any other reason.
    bad_input,    ///< The bytes read do not have the required form.
    limit,        ///< A safety limit (a size, a count, a depth) was exceeded.
    unsupported,  ///< Well-formed, but of a kind that is not supported.
    cancelled,    ///< The user stopped the operation.
    bad_argument  ///< The caller's request makes no sense.
};

/// A failure: its kind, the byte offset in the input where it showed (0 if that has no meaning), and a short text for
/// people, without a path and without a full stop.
struct Error {
    ErrorCode code = ErrorCode::io;
    std::uint64_t offset = 0;
    std::string text;

    bool operator==(const Error&) const = default;
};

/// Returns the error for the `errno`-style number `number`, with the system's own text.
Error system_error(int number);

/// Either a value or the Error that prevented it.
template <class T>
class [[nodiscard]] Result {
  public:
    Result(T value) : state_(std::in_place_index<0>, std::move(value)) {}
    Result(Error error) : state_(std::in_place_index<1>, std::move(error)) {}

    bool ok() const { return state_.index() == 0; }
    explicit operator bool() const { return ok(); }

    /// REQUIRES: ok().
    T& value() & { return std::get<0>(state_); }
    const T& value() const& { return std::get<0>(state_); }
    T&& value() && { return std::get<0>(std::move(state_)); }
    T& operator*() & { return value(); }
    const T& operator*() const& { return value(); }
    T&& operator*() && { return std::move(*this).value(); }
    T* operator->() { return &value(); }
    const T* operator->() const { return &value(); }

    /// REQUIRES: !ok().
    const Error& error() const { return std::get<1>(state_); }

  private:
    std::variant<T, Error> state_;
};

/// The result of an operation that yields only success.
struct Done {
    bool operator==(const Done&) const = default;
};

using Status = Result<Done>;

}  // namespace quill
