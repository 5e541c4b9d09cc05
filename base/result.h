// SPDX-License-Identifier: MIT
// The outcome of an operation that can fail: a value, or an error that says why there is none. Any thread.
#pragma once

#include <QString>

#include <optional>
#include <utility>
#include <variant>

/// Why an operation has failed.
struct Error
{
    QString message; ///< for the user: one sentence without a full stop
};

template <typename T, typename E = Error> class Result;

/// Either a `T` or an `E`. Both convert to it: a function can return either directly.
template <typename T, typename E> class [[nodiscard]] Result
{
public:
    Result(T value) : mOutcome(std::in_place_index<0>, std::move(value)) {}
    Result(E error) : mOutcome(std::in_place_index<1>, std::move(error)) {}

    /// Whether there is a value.
    explicit operator bool() const { return mOutcome.index() == 0; }
    /// The value. There must be one.
    const T &operator*() const { return *std::get_if<0>(&mOutcome); }
    const T *operator->() const { return std::get_if<0>(&mOutcome); }
    /// The value, moved out of this. There must be one.
    T take() { return std::move(*std::get_if<0>(&mOutcome)); }
    /// The value, or `other` if there is none.
    T valueOr(T other) const { return *this ? **this : std::move(other); }
    /// The error. There must be one.
    const E &error() const { return *std::get_if<1>(&mOutcome); }

    /// The same outcome for a caller that needs neither the value nor more of the error than `F` has.
    template <typename F = E> Result<void, F> withoutValue() const
    {
        return *this ? Result<void, F>() : Result<void, F>(error());
    }

    /// Whether both have the same value or the same error.
    bool operator==(const Result &other) const = default;

private:
    std::variant<T, E> mOutcome;
};

/// For an operation that returns nothing when it succeeds.
template <typename E> class [[nodiscard]] Result<void, E>
{
public:
    Result() = default;
    Result(E error) : mError(std::move(error)) {}

    explicit operator bool() const { return !mError; }
    const E &error() const { return *mError; }

    bool operator==(const Result &other) const = default;

private:
    std::optional<E> mError;
};
