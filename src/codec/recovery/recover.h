#pragma once

#include "codec/attachment.h"
#include "codec/recovery/decode.h"
#include "codec/recovery/found_file.h"
#include "codec/recovery/sources.h"
#include "files/atomic_file.h"
#include "text/result.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

/// From encoded files on the disk to decoded files on the disk.
namespace quill::codec {

/// Told now and then how much of the work is done, in bytes of input; returns false to stop.
using OnProgress = std::function<bool(std::uint64_t done, std::uint64_t total)>;

/// One decoded file on the disk, or one that could not be written.
struct Recovered {
    std::string name;  ///< its bare file name, as it is on the disk
    std::string path;  ///< empty where nothing was written
    Format format = Format::identity;
    Outcome outcome;
    std::vector<std::string> sources;  ///< paths of the inputs that it was put together from
    bool already_there = false;        ///< the file at `path` had the same bytes before: nothing was written
};

/// Returns the path of a file that has the bytes of the one written already; nullopt where there is none.
using FindCopy = std::function<std::optional<std::string>(const files::AtomicFile& written)>;

/// The inputs of a run, mapped and scanned: all that they hold, joined where a file's parts lie in several inputs.
class Recovery {
  public:
    /// Opens and scans `paths`, and leaves the texts of messages out or not. Fails with the first input's error that
    /// cannot be opened (its path in the text).
    static Result<Recovery> open(std::span<const std::string> paths, const OnProgress& progress = {},
                                 Texts texts = Texts::kept);

    /// Everything found, in input order; message texts and resource forks among it.
    const std::vector<Attachment>& attachments() const { return attachments_; }

    /// Problems of the inputs as a whole: limits that were met.
    const std::vector<Problem>& problems() const { return problems_; }

    /// Decodes without writing: what list and verify need. Where `progress` stops it, the outcome is that so far.
    Outcome check(const Attachment& attachment, const OnProgress& progress = {}) const;

    /// Decodes `attachment` and publishes it as `path`, unless `find_copy` finds its bytes on the disk. An output of
    /// which nothing at all could be decoded is still written where its structure says that it is empty, else the error
    /// is `bad_input`. Fails with `io` where an input has changed meanwhile.
    Result<Recovered> write(const Attachment& attachment, const std::string& path, files::OnCollision on_collision,
                            const OnProgress& progress = {}, const FindCopy& find_copy = {}) const;

    /// The inputs that hold a part of it, each once, in the order of the parts.
    std::vector<std::uint32_t> inputs_of(const Attachment& attachment) const;

  private:
    explicit Recovery(Sources sources) : sources_(std::move(sources)) {}

    void take(std::vector<FoundFile> files);
    void note_changes(const Attachment& attachment, Outcome& outcome) const;
    OnRead release_behind(const Attachment& attachment, const OnProgress& progress) const;

    Sources sources_;
    std::vector<Attachment> attachments_;
    std::vector<Problem> problems_;
    mutable files::LastNumbers last_numbers_;  ///< of the names of the files written
};

}  // namespace quill::codec
