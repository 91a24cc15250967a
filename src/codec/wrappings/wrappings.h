#pragma once

#include "codec/wrappings/plain_text.h"
#include "codec/wrappings/sample.h"
#include "report/problem_kind.h"

#include <span>
#include <string_view>

namespace quill::codec {

/// A change of a text, or of stretches of it, in transit, which can be undone without knowing which files the text
/// contains.
struct Wrapping {
    report::ProblemKind kind;     ///< the problem that reports it
    report::ProblemKind of_text;  ///< the problem that reports it if the result is the text itself

    /// Returns true if the text may be wrapped in this way. Costs as much as reading the sample.
    bool (*detect)(const Sample& sample);

    /// Appends the plain text, with stretches that are not wrapped as ranges. Keeps text unchanged that turns out not
    /// to be wrapped.
    void (*unwrap)(std::string_view wrapped, PlainText& out);
};

/// Returns all wrappings, in the order in which they are tried: those of the whole text first.
std::span<const Wrapping> wrappings();

/// The most wrappings that are removed from one text.
constexpr unsigned most_wrappings = 8;

}  // namespace quill::codec
