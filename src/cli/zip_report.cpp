#include "cli/zip_report.h"

#include "archive/container/format.h"
#include "archive/container/member_time.h"
#include "cli/report.h"

#include <ostream>
#include <vector>

namespace quill::cli {
namespace {

std::string method_of(const zip::Member& member) {
    std::string method = zip::method_name(member.content_method());
    if (member.is_encrypted()) method += member.is_aes() ? ", AES" : ", encrypted";
    return method;
}

std::string line_of(const zip::Member& member) {
    constexpr std::size_t usual_length = 128;
    std::string line;
    line.reserve(usual_length);
    line.append(printable(member.name)).append("\t").append(std::to_string(member.uncompressed_size)).append("\t");
    line.append(std::to_string(member.compressed_size)).append("\t").append(method_of(member)).append("\t");
    return line.append(zip::iso_date_time(member.dos_time));
}

std::string json_of(const zip::Member& member) {
    return json_object({{"name", json_string(member.name)},
                        {"size", std::to_string(member.uncompressed_size)},
                        {"compressed_size", std::to_string(member.compressed_size)},
                        {"method", json_string(zip::method_name(member.content_method()))},
                        {"modified", json_string(zip::iso_date_time(member.dos_time))},
                        {"encrypted", json_flag(member.is_encrypted())},
                        {"directory", json_flag(member.is_directory())},
                        {"link", json_flag(member.is_link())},
                        {"recovered", json_flag(member.recovered)}});
}

std::string line_of(const zip::Member& member, const zip::MemberResult& result, const std::string& path) {
    return printable(path.empty() ? member.name : path) + "\t" + std::to_string(result.size) + "\t" +
           std::string(name_of(result.verdict)) + "\t" + method_of(member);
}

std::string json_of(const zip::Member& member, const zip::MemberResult& result, const std::string& path) {
    const auto problem = [](const zip::Problem& item) { return cli::json_of(item); };
    return json_object({{"name", json_string(member.name)},
                        {"path", json_or_null(path)},
                        {"size", std::to_string(result.size)},
                        {"method", json_string(zip::method_name(member.content_method()))},
                        {"verdict", json_string(name_of(result.verdict))},
                        {"problems", json_array(result.problems, problem)}});
}

}  // namespace

Error zip_member_missing() {
    return {ErrorCode::not_found, 0, "the archive has no such member"};
}

void ZipReport::list(const zip::Member& member) {
    found_ = true;
    if (results_.style() == ReportStyle::silent) return;
    results_.put(results_.are_json() ? json_of(member) : line_of(member), Delivery::later);
}

void ZipReport::add(const zip::Member& member, const zip::MemberResult& result, const std::string& path) {
    if (result.verdict == zip::Verdict::damaged || result.verdict == zip::Verdict::refused) damaged_ = true;
    report_problems(member, result);
    found_ = true;
    if (results_.style() == ReportStyle::silent) return;
    results_.put(results_.are_json() ? json_of(member, result, path) : line_of(member, result, path));
}

void ZipReport::report_problems(const zip::Member& member, const zip::MemberResult& result) {
    for (const zip::Problem& problem : result.problems) {
        const bool is_repaired = grade_of(problem) == zip::Grade::repaired;
        if (problem.kind == zip::ProblemKind::not_written) failed_ = true;
        if (!is_repaired) damaged_ = true;
        if (is_repaired && results_.style() != ReportStyle::lines) continue;
        console_.err << "quill: " << printable(member.name) << ": " << printable(text_of(problem)) << '\n';
    }
}

void ZipReport::archive_problems(std::string_view archive, const zip::Archive& opened) {
    for (const zip::Problem& problem : opened.problems()) {
        const bool harmless =
            problem.kind == zip::ProblemKind::shifted || problem.kind == zip::ProblemKind::junk_behind;
        if (!harmless) damaged_ = true;
        console_.err << "quill: " << printable(archive) << ": " << printable(text_of(problem)) << '\n';
    }
}

void ZipReport::fail(std::string_view what, const Error& error) {
    failed_ = true;
    console_.err << "quill: " << printable(what) << ": " << printable(error.text) << '\n';
}

void ZipReport::refuse(std::string_view archive, std::string_view reason) {
    damaged_ = true;
    console_.err << "quill: " << printable(archive) << ": " << printable(reason) << '\n';
}

void ZipReport::missing(std::string_view name) {
    fail(name, zip_member_missing());
}

ExitStatus ZipReport::finish() {
    results_.finish();
    if (failed_) return ExitStatus::failed;
    if (damaged_) return ExitStatus::damaged;
    if (found_) return ExitStatus::good;
    if (results_.style() == ReportStyle::lines) console_.err << "quill: the archive is empty\n";
    return ExitStatus::nothing;
}

}  // namespace quill::cli
