#include "cli/zip_report.h"

#include "cli/report.h"
#include "zip/format.h"
#include "zip/member_time.h"

#include <ostream>
#include <vector>

namespace quill::cli {
namespace {

std::string method_of(const zip::Member& member) {
    std::string method = zip::method_name(member.content_method());
    if (member.is_encrypted()) method += member.is_aes() ? ", AES" : ", encrypted";
    return method;
}

std::string json_of(const std::vector<zip::Problem>& problems) {
    std::string out;
    for (const zip::Problem& problem : problems) {
        out += out.empty() ? "[" : ", ";
        out += "{\"kind\": " + json_string(problem.kind) + ", \"at\": " + std::to_string(problem.at_input) +
               ", \"text\": " + json_string(problem.text) + "}";
    }
    return (out.empty() ? "[" : out) + "]";
}

}  // namespace

Error zip_member_missing() {
    return {ErrorCode::not_found, 0, "the archive has no such member"};
}

void ZipReport::put(std::string line, std::string json) {
    found_ = true;
    if (json_) {
        console_.out << (first_ ? "[" : ",\n ") << json;
    } else if (!quiet_) {
        console_.out << line << '\n';
    }
    first_ = false;
}

void ZipReport::list(const zip::Member& member) {
    const std::string size = std::to_string(member.uncompressed_size), packed = std::to_string(member.compressed_size);
    const std::string method = method_of(member), time = zip::iso_date_time(member.dos_time);
    if (!json_) {
        put(printable(member.name) + "\t" + size + "\t" + packed + "\t" + method + "\t" + time, {});
        return;
    }
    const auto flag = [](bool value) { return value ? "true" : "false"; };
    put({}, "{\"name\": " + json_string(member.name) + ", \"size\": " + size + ", \"compressed_size\": " + packed +
                ", \"method\": " + json_string(zip::method_name(member.content_method())) +
                ", \"modified\": " + json_string(time) + ", \"encrypted\": " + flag(member.is_encrypted()) +
                ", \"directory\": " + flag(member.is_directory()) + ", \"link\": " + flag(member.is_link()) +
                ", \"recovered\": " + flag(member.recovered) + "}");
}

void ZipReport::add(const zip::Member& member, const zip::MemberResult& result, const std::string& path) {
    const bool bad = result.fate == zip::Fate::damaged || result.fate == zip::Fate::refused;
    damaged_ = damaged_ || bad;
    for (const zip::Problem& problem : result.problems) {
        if (problem.kind == "not-written") failed_ = true;
        if (problem.grade != zip::Grade::repaired) damaged_ = true;
        if (problem.grade == zip::Grade::repaired && json_) continue;
        if (problem.grade == zip::Grade::repaired && quiet_) continue;
        console_.err << "quill: " << printable(member.name) << ": " << printable(problem.text) << '\n';
    }
    const std::string size = std::to_string(result.size);
    const std::string verdict(name_of(result.fate));
    if (!json_) {
        put(printable(path.empty() ? member.name : path) + "\t" + size + "\t" + verdict + "\t" + method_of(member), {});
        return;
    }
    put({}, "{\"name\": " + json_string(member.name) + ", \"path\": " + (path.empty() ? "null" : json_string(path)) +
                ", \"size\": " + size + ", \"method\": " + json_string(zip::method_name(member.content_method())) +
                ", \"verdict\": " + json_string(verdict) + ", \"problems\": " + json_of(result.problems) + "}");
}

void ZipReport::archive_problems(std::string_view archive, const zip::Archive& opened) {
    for (const zip::Problem& problem : opened.problems()) {
        if (problem.kind != "shifted" && problem.kind != "junk-behind") damaged_ = true;
        console_.err << "quill: " << printable(archive) << ": " << printable(problem.text) << '\n';
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
    if (json_) console_.out << (first_ ? "[]\n" : "]\n");
    if (failed_) return ExitStatus::failed;
    if (damaged_) return ExitStatus::damaged;
    if (found_) return ExitStatus::good;
    if (!json_ && !quiet_) console_.err << "quill: the archive is empty\n";
    return ExitStatus::nothing;
}

}  // namespace quill::cli
