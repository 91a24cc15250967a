#include "cli/commands.h"
#include "cli/interruption.h"
#include "cli/progress.h"
#include "cli/report.h"
#include "codec/encode.h"
#include "files/directory.h"
#include "files/path.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace quill::cli {
namespace {

struct EncodeRequest {
    std::string format;
    std::string output;  ///< a file or a directory; empty: the format's rule
    codec::EncodeOptions options;
    bool quiet = false;
    std::vector<std::string> files;
};

/// One input with what is to become of it.
struct Job {
    std::string input;
    std::string output;                ///< before its parts are numbered
    std::vector<std::string> outputs;  ///< what will be written
};

Error refusal(std::string text) {
    return {ErrorCode::bad_argument, 0, std::move(text)};
}

/// The format's own name for the output of `path`. Steps upwards at its beginning are no names with dots.
std::string default_path(const codec::OutputFormat& format, const std::string& path) {
    const std::string normal = std::filesystem::path(path).lexically_normal();
    std::size_t upwards = 0;
    while (normal.compare(upwards, 3, "../") == 0) upwards += 3;
    return normal.substr(0, upwards) + codec::default_output_path(format, std::string_view(normal).substr(upwards));
}

Result<std::string> output_for(const EncodeRequest& request, const codec::OutputFormat& format,
                               const std::string& input) {
    if (request.output.empty()) return default_path(format, input);
    if (files::is_directory(request.output)) {
        return files::join(request.output, codec::default_output_path(format, files::name_of(input)));
    }
    if (request.files.size() > 1) return refusal("several files can go into a directory only");
    return request.output;
}

/// Fills `job` for one input. Its outputs must be none of the inputs, and of no other job.
Status plan(Job& job, const EncodeRequest& request, const codec::OutputFormat& format, const std::vector<Job>& before) {
    const Result<std::string> output = output_for(request, format, job.input);
    if (!output) return output.error();
    job.output = *output;
    const std::uint64_t size = files::file_size(job.input).value_or(0);
    const auto outputs = codec::output_paths(job.output, size, format, request.options);
    if (!outputs) return outputs.error();
    job.outputs = *outputs;
    for (const std::string& path : job.outputs) {
        const auto is_output = [&](const std::string& input) { return files::same_file(input, path); };
        if (std::any_of(request.files.begin(), request.files.end(), is_output)) {
            return refusal("the output \"" + path + "\" would replace an input");
        }
        for (const Job& other : before) {
            if (std::find(other.outputs.begin(), other.outputs.end(), path) != other.outputs.end()) {
                return refusal("\"" + other.input + "\" gives \"" + path + "\" as well");
            }
        }
    }
    return Done{};
}

/// Encodes one file and tells what was written; false where that failed.
bool encode_one(const Job& job, const EncodeRequest& request, const codec::OutputFormat& format, const Console& console,
                Report& report, ProgressBar& progress) {
    const auto written = codec::encode_file(job.input, job.output, format, request.options,
                                            [&](std::uint64_t done, std::uint64_t total) {
                                                progress.show(job.input, done, total);
                                                return !Interruption::caught();
                                            });
    progress.clear();
    if (!written) {
        report.fail(job.input, written.error());
        return false;
    }
    if (request.quiet) return true;
    for (const std::string& path : *written) {
        console.out << printable(path) << "\t" << files::file_size(path).value_or(0) << "\n";
    }
    return true;
}

ExitStatus encode(const EncodeRequest& request, const Console& console) {
    const codec::OutputFormat& format = *codec::output_format(request.format);
    Report report(console, ReportStyle::silent);
    std::vector<Job> jobs;
    for (const std::string& file : request.files) {
        Job job{file, {}, {}};
        if (const Status planned = plan(job, request, format, jobs); !planned) {
            report.fail(file, planned.error());
            return ExitStatus::failed;
        }
        jobs.push_back(std::move(job));
    }
    ProgressBar progress(console, !request.quiet);
    const Interruption interruption;
    bool all_written = true;
    for (const Job& job : jobs) {
        if (Interruption::caught()) break;
        all_written = encode_one(job, request, format, console, report, progress) && all_written;
    }
    return all_written ? ExitStatus::good : ExitStatus::failed;
}

std::vector<std::string> format_names() {
    std::vector<std::string> names;
    for (const codec::OutputFormat& format : codec::output_formats()) names.emplace_back(format.name);
    return names;
}

}  // namespace

void add_encode_command(CLI::App& app, Work& work) {
    auto* command = app.add_subcommand("encode", "Write files as UUE, MIME, BinHex, XXE or yEnc text");
    const auto request = std::make_shared<EncodeRequest>();
    command->add_option("--format", request->format, "How to encode")
        ->required()
        ->type_name("FORMAT")
        ->check(CLI::IsMember(format_names()));
    command->add_option("--output", request->output, "Where to write: a file or, for several inputs, a directory")
        ->type_name("PATH");
    command->add_flag("--crc", request->options.crc, "yEnc: state the CRC-32 of the file in the trailer");
    command->add_option("--line", request->options.line_length, "MIME, yEnc: characters on a line (default: 76, 128)")
        ->type_name("N")
        ->check(CLI::PositiveNumber);
    command
        ->add_option("--part-size", request->options.part_size,
                     "yEnc, UUE: bytes of the file in one output; the names of the\noutputs are numbered")
        ->type_name("N")
        ->check(CLI::PositiveNumber);
    command->add_flag("--quiet", request->quiet, "Say errors alone");
    command->add_option("FILE", request->files, "What to encode")->required();
    command->footer(
        "Without --output all behind the first dot of the path given, directories included,\n"
        "becomes UUE, MME, HQX or XXE; a path without a dot gives that name alone, in the\n"
        "current directory. For yEnc the last three characters of the path become `ync`.\n"
        "An existing output is replaced once the new one is whole; an input never is. Each\n"
        "output is a line: path and size in bytes, with a tab between. Exit status: 0 all is\n"
        "written; 3 bad usage, or a file can't be read or written.");
    command->callback(
        [&work, request] { work = [request](const Console& console) { return encode(*request, console); }; });
}

}  // namespace quill::cli
