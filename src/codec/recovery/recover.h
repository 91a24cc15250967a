#pragma once

#include "codec/attachment.h"
#include "codec/mail/origin.h"
#include "codec/recovery/decode.h"
#include "codec/recovery/found_file.h"
#include "codec/recovery/sources.h"
#include "files/atomic_file.h"
#include "text/result.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

/// From encoded files on the disk to decoded files on the disk.
namespace quill::codec {

/// Is called periodically with the progress in bytes of input; returns false to stop.
using OnProgress = std::function<bool(std::uint64_t done, std::uint64_t total)>;

/// One decoded file on the disk, or one that could not be written.
struct Recovered {
    std::string name;  ///< its bare file name on the disk
    std::string path;  ///< empty if nothing was written
    Format format = Format::identity;
    Outcome outcome;
    std::vector<std::string> sources;   ///< paths of the inputs that it was joined from
    bool already_there = false;         ///< the file at `path` already had the same bytes: nothing was written
    std::optional<Origin> origin = {};  ///< the mail that it was in, if asked for
};

/// Returns the path of an existing file with the same bytes as `written`; nullopt if there is none.
using FindCopy = std::function<std::optional<std::string>(const files::AtomicFile& written)>;

/// The inputs of a run, mapped and scanned: all their contents, with files joined whose parts are in several inputs.
class Recovery {
  public:
    /// Opens and scans `paths`, with or without the texts of messages. Fails with the error of the first input that
    /// cannot be opened (its path in the text).
    static Result<Recovery> open(std::span<const std::string> paths, const OnProgress& progress = {},
                                 Texts texts = Texts::kept);

    /// Returns everything found, in input order, including message texts and resource forks.
    const std::vector<Attachment>& attachments() const { return attachments_; }

    /// Returns the problems of the inputs as a whole: limits reached.
    const std::vector<Problem>& problems() const { return problems_; }

    /// Decodes without writing, for list and verify. If `progress` stops it, returns the outcome so far.
    Outcome check(const Attachment& attachment, const OnProgress& progress = {}) const;

    /// Decodes `attachment` and publishes it as `path`, unless `find_copy` finds its bytes on the disk. If nothing
    /// could be decoded, the output is still written if its structure says that it is empty; otherwise the error is
    /// `bad_input`. Fails with `io` if an input has changed meanwhile.
    Result<Recovered> write(const Attachment& attachment, const std::string& path, files::OnCollision on_collision,
                            const OnProgress& progress = {}, const FindCopy& find_copy = {}) const;

    /// Returns the mail that its first part is in; all fields are empty if no header is found.
    Origin origin_of(const Attachment& attachment) const;

    /// Returns the inputs that contain a part of it, without duplicates, in the order of the parts.
    std::vector<std::uint32_t> inputs_of(const Attachment& attachment) const;

  private:
    explicit Recovery(Sources sources) : sources_(std::move(sources)) {}

    void take(std::vector<FoundFile> files);
    void note_changes(const Attachment& attachment, Outcome& outcome) const;
    OnRead release_behind(const Attachment& attachment, const OnProgress& progress) const;

    Sources sources_;
    std::vector<Attachment> attachments_;
    std::vector<Problem> problems_;
    mutable std::map<std::uint32_t, OriginFinder> origins_;  ///< by the number of the text
    mutable files::LastNumbers last_numbers_;                ///< of the written files' names
};

}  // namespace quill::codec
