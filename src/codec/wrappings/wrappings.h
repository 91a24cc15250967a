#pragma once

#include "codec/wrappings/plain_text.h"
#include "codec/wrappings/sample.h"
#include "report/problem_kind.h"

#include <span>
#include <string_view>

namespace quill::codec {

/// One thing that was done to a text, or to stretches of it, on its way, and that is undone without knowing which
/// files the text holds.
struct Wrapping {
    report::ProblemKind kind;     ///< what reports it
    report::ProblemKind of_text;  ///< what reports it where the result is the text itself

    /// Returns true if the text may be wrapped so. Costs as much as reading the sample.
    bool (*detect)(const Sample& sample);

    /// Appends the plain text; stretches that are not wrapped as ranges. What does not turn out to be wrapped is kept
    /// as it is.
    void (*unwrap)(std::string_view wrapped, PlainText& out);
};

/// All wrappings, in the order in which they are looked for: those of the whole text first.
std::span<const Wrapping> wrappings();

/// How many wrappings come off one text.
constexpr unsigned most_wrappings = 8;

}  // namespace quill::codec
