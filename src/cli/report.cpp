#include "cli/report.h"

#include "codec/problem_kinds.h"
#include "text/utf8.h"

#include <array>
#include <cstdio>
#include <ostream>

namespace quill::cli {
namespace {

void append_u_escape(std::string& out, unsigned code_unit) {
    std::array<char, 8> escape{};
    std::snprintf(escape.data(), escape.size(), "\\u%04x", code_unit & 0xFFFFU);
    out += escape.data();
}

/// Appends `c` as one \u escape, or as two for the surrogate pair of a character above U+FFFF.
void append_escaped(std::string& out, char32_t c) {
    if (c >= 0x10000) append_u_escape(out, 0xD800U + ((c - 0x10000) >> 10U));
    append_u_escape(out, c >= 0x10000 ? 0xDC00U + (c & 0x3FFU) : c);
}

void append_json_character(std::string& out, char32_t c) {
    switch (c) {
        case U'"':
            out += "\\\"";
            break;
        case U'\\':
            out += "\\\\";
            break;
        case U'\n':
            out += "\\n";
            break;
        case U'\t':
            out += "\\t";
            break;
        default:
            if (text::is_display_control(c)) {
                append_escaped(out, c);
            } else {
                text::append_utf8(out, c);
            }
    }
}

std::string json_of(const codec::Problem& problem) {
    return "{\"kind\": " + json_string(problem.kind) + ", \"at\": " + std::to_string(problem.at_input) +
           ", \"text\": " + json_string(problem.text) + "}";
}

/// The items, each turned to JSON by `turn`, as an array.
template <class Items, class Turn>
std::string json_array(const Items& items, Turn turn) {
    std::string out = "[";
    for (const auto& item : items) {
        if (out.size() > 1) out += ", ";
        out += turn(item);
    }
    return out + "]";
}

}  // namespace

std::string json_string(std::string_view bytes) {
    std::string out = "\"";
    while (!bytes.empty()) {
        if (text::character_length(bytes) == 0) {
            append_u_escape(out, 0xDC00U + static_cast<unsigned char>(bytes.front()));
            bytes.remove_prefix(1);
        } else {
            append_json_character(out, text::next_character(bytes));
        }
    }
    return out + "\"";
}

std::string line_of(const codec::Recovered& file) {
    return printable(file.name) + "\t" + std::to_string(file.outcome.size) + "\t" +
           std::string(name_of(file.outcome.verdict)) + "\t" + std::string(name_of(file.format));
}

std::string json_of(const codec::Recovered& file) {
    const auto problem = [](const codec::Problem& item) { return json_of(item); };
    return "{\"name\": " + json_string(file.name) +
           ", \"path\": " + (file.path.empty() ? "null" : json_string(file.path)) +
           ", \"size\": " + std::to_string(file.outcome.size) + ", \"format\": " + json_string(name_of(file.format)) +
           ", \"verdict\": " + json_string(name_of(file.outcome.verdict)) +
           ", \"problems\": " + json_array(file.outcome.problems, problem) +
           ", \"sources\": " + json_array(file.sources, json_string) + "}";
}

void Report::add(const codec::Recovered& file) {
    using codec::Verdict;
    found_ = true;
    if (file.outcome.verdict == Verdict::damaged || file.outcome.verdict == Verdict::incomplete) damaged_ = true;
    if (style_ == ReportStyle::lines) {
        console_.out << line_of(file) << std::endl;
        tell_problems(file);
    } else if (style_ == ReportStyle::json) {
        json_ += (json_.empty() ? "[" : ",\n ") + json_of(file);
    }
}

void Report::tell_problems(const codec::Recovered& file) const {
    for (const codec::Problem& problem : file.outcome.problems) {
        if (!codec::is_for_people(problem)) continue;
        console_.err << "quill: " << printable(file.name) << ": at byte " << problem.at_input << ": "
                     << printable(problem.text) << '\n';
    }
}

void Report::add(const codec::Problem& problem) {
    damaged_ = true;
    if (style_ == ReportStyle::silent) return;
    console_.err << "quill: at byte " << problem.at_input << ": " << printable(problem.text) << '\n';
}

void Report::fail(std::string_view what, const Error& error) {
    failed_ = true;
    console_.err << "quill: " << printable(what) << (what.empty() ? "" : ": ") << printable(error.text) << '\n';
}

ExitStatus Report::finish() {
    if (style_ == ReportStyle::json) console_.out << (json_.empty() ? "[" : json_) << "]\n";
    if (failed_) return ExitStatus::failed;
    if (damaged_) return ExitStatus::damaged;
    if (found_) return ExitStatus::good;
    if (style_ == ReportStyle::lines) console_.err << "quill: nothing to decode was found\n";
    return ExitStatus::nothing;
}

}  // namespace quill::cli
