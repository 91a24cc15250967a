#include "cli/commands.h"
#include "cli/file_names.h"
#include "cli/interruption.h"
#include "cli/progress.h"
#include "cli/report.h"
#include "cli/usage.h"
#include "codec/writing/encode.h"
#include "files/directory.h"
#include "files/path.h"
#include "files/unfinished.h"
#include "text/ascii.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

namespace quill::cli {
namespace {

struct EncodeRequest {
    std::string format;
    std::string output;  ///< a file or a directory; empty: beside the input
    codec::EncodeOptions options;
    bool force = false;
    ResultOptions results;
    FileNames names;
};

/// One input and its outputs.
struct Job {
    std::string input;
    std::string output;                ///< before its parts are numbered
    std::vector<std::string> outputs;  ///< what will be written
};

Error refusal(std::string text) {
    return {ErrorCode::bad_argument, 0, std::move(text)};
}

/// Plans the outputs so that none replaces an input, another output, or an existing file that must be kept.
class Plan {
  public:
    Plan(const EncodeRequest& request, const codec::OutputFormat& format, const std::vector<std::string>& inputs,
         Report& report)
        : request_(request), format_(format), several_(inputs.size() > 1), report_(report) {
        for (const std::string& input : inputs) {
            if (const auto identity = files::identity_of(input)) inputs_.insert(*identity);
        }
    }

    /// Returns the job for one input, or reports what prevents it and returns nullopt.
    std::optional<Job> job_of(const std::string& input) {
        Result<std::string> output = output_for(input);
        if (!output) return refuse(input, output.error());
        const std::uint64_t size = files::file_size(input).value_or(0);
        auto outputs = codec::output_paths(*output, size, format_, request_.options);
        if (!outputs) return refuse(input, outputs.error());
        for (const std::string& path : *outputs) {
            if (const Status allowed = check(input, path); !allowed) return refuse(path, allowed.error());
        }
        return Job{input, *std::move(output), *std::move(outputs)};
    }

  private:
    Result<std::string> output_for(const std::string& input) const {
        const std::string extension = "." + text::to_lower(format_.extension);
        if (request_.output.empty()) return input + extension;
        if (files::is_directory(request_.output)) {
            return files::join(request_.output, files::name_of(input) + extension);
        }
        if (several_)
            return refusal("several files need a directory to go into, and " + request_.output + " is not one");
        return request_.output;
    }

    std::nullopt_t refuse(const std::string& what, const Error& error) {
        report_.fail(what, error);
        return std::nullopt;
    }

    Status check(const std::string& input, const std::string& path) {
        const auto identity = files::identity_of(path);
        if (identity && inputs_.contains(*identity)) return output_is_input();
        const auto [other, is_new] = taken_.emplace(path, input);
        if (!is_new) return refusal("is the output of both " + other->second + " and " + input);
        if (!request_.force && files::exists(path) && !files::is_special(path)) return output_exists();
        return Done{};
    }

    const EncodeRequest& request_;
    const codec::OutputFormat& format_;
    bool several_;
    Report& report_;
    std::set<files::Identity> inputs_;
    std::unordered_map<std::string, std::string> taken_;  ///< outputs, and the inputs that give them
};

/// The state of a run.
struct Run {
    const EncodeRequest& request;
    const codec::OutputFormat& format;
    Report report;
    Results results;
    ProgressBar progress;
};

void report_output(const Job& job, const std::string& path, std::size_t part, std::size_t parts, Run& run) {
    const std::string size = std::to_string(files::file_size(path).value_or(0));
    if (!run.results.are_json()) return run.results.put(printable(path) + "\t" + size);
    run.results.put(json_object({{"name", json_string(files::name_of(path))},
                                 {"path", json_string(path)},
                                 {"size", size},
                                 {"format", json_string(run.format.name)},
                                 {"part", std::to_string(part)},
                                 {"parts", std::to_string(parts)},
                                 {"sources", "[" + json_string(job.input) + "]"}}));
}

/// Encodes one file and reports what was written; returns false on failure.
bool encode_one(const Job& job, Run& run) {
    codec::EncodeOptions options = run.request.options;
    options.on_collision = run.request.force ? files::OnCollision::replace : files::OnCollision::fail;
    const auto written =
        codec::encode_file(job.input, job.output, run.format, options, [&](std::uint64_t done, std::uint64_t total) {
            run.progress.show(job.input, done, total);
            return !Interruption::caught();
        });
    run.progress.clear();
    if (!written) {
        if (written.error().code != ErrorCode::cancelled) run.report.fail(job.input, written.error());
        return false;
    }
    for (std::size_t i = 0; i < written->size(); ++i) {
        // Output that went into a pipe or a device gets no line: that may be standard output.
        if (!files::is_special((*written)[i])) report_output(job, (*written)[i], i + 1, written->size(), run);
    }
    return true;
}

/// Removes files that killed runs left in the output directories.
void clean_directories(const std::vector<Job>& jobs) {
    std::set<std::string> directories;
    for (const Job& job : jobs) directories.insert(files::dir_of(files::resolved(job.output)));
    for (const std::string& directory : directories) files::remove_abandoned(directory);
}

ExitStatus encode(const EncodeRequest& request, const Console& console) {
    Run run{request, *codec::output_format(request.format), Report(console, ReportStyle::silent),
            Results(console, request.results.style()), ProgressBar(console, !request.results.quiet)};
    const Result<std::vector<std::string>> inputs = all_names(request.names, console.in);
    if (!inputs) {
        run.report.fail(request.names.list, inputs.error());
        return ExitStatus::failed;
    }
    std::vector<Job> jobs;
    Plan plan(request, run.format, *inputs, run.report);
    for (const std::string& input : *inputs) {
        std::optional<Job> job = plan.job_of(input);
        if (!job) return ExitStatus::failed;
        jobs.push_back(*std::move(job));
    }
    clean_directories(jobs);
    const Interruption interruption;
    bool all_written = true;
    for (const Job& job : jobs) {
        if (Interruption::caught()) break;
        all_written = encode_one(job, run) && all_written;
    }
    run.results.finish();
    return all_written ? ExitStatus::good : ExitStatus::failed;
}

std::vector<std::string> format_names() {
    std::vector<std::string> names;
    for (const codec::OutputFormat& format : codec::output_formats()) names.emplace_back(format.name);
    return names;
}

void add_format_options(CLI::App& command, EncodeRequest& request) {
    command.add_option("--format", request.format, "How to encode")
        ->required()
        ->type_name("FORMAT")
        ->check(one_of(format_names()));
    command.add_flag("--crc", request.options.crc, "yEnc only: state the CRC-32 of the file in the trailer");
    command
        .add_option("--line", request.options.line_length,
                    "MIME and yEnc only: characters on a line (default: 76 and 128)")
        ->type_name("N")
        ->check(above_zero());
    command
        .add_option(
            "--part-size", request.options.part_size,
            "yEnc and UUE only: split the file into outputs that hold N bytes\nof it each; their names are numbered")
        ->type_name("N")
        ->check(above_zero());
}

}  // namespace

void add_encode_command(CLI::App& app, Work& work) {
    auto* command = app.add_subcommand("encode", "Write files as UUE, MIME, BinHex, XXE or yEnc text");
    const auto request = std::make_shared<EncodeRequest>();
    add_format_options(*command, *request);
    command
        ->add_option("--output", request->output,
                     "Where to write: a file or, for several inputs, a directory;\n"
                     "a pipe or a device is written into")
        ->type_name("PATH");
    command->add_flag("--force", request->force, "Replace existing outputs");
    add_result_options(*command, request->results);
    add_file_names(*command, request->names, "What to encode");
    command->footer(
        "Without --output the text of `film.avi` is `film.avi.uue` beside it (.mme, .hqx,\n"
        ".xxe, .ync). An existing file is replaced only with --force, once the new one is\n"
        "complete; an input never is. Each output is a line: path and size in bytes, with a\n"
        "tab between. Exit status: 0 all is written; 3 bad usage, an output exists already,\n"
        "or a file can't be read or written.");
    command->callback(
        [&work, request] { work = [request](const Console& console) { return encode(*request, console); }; });
}

}  // namespace quill::cli
