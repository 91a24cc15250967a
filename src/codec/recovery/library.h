#pragma once

#include "codec/recovery/recover.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace quill::codec {

/// The decoding library as the desktop program calls it: five functions over one remembered input.
///
/// Names of outputs are relative: they land in the current directory.
class DecodingLibrary {
  public:
    /// How many encoded files the file at `path` holds; 0 where it cannot be read. Remembers what it found for
    /// `GetEncodedFile`. Message texts and resource forks do not count.
    std::int32_t GetNumFilesToDecode(const std::string& path);

    /// Puts the output name of file `index`, from 0, into `name`; leaves it alone where there is no such file.
    void GetEncodedFile(std::string& name, std::int32_t index) const;

    /// Replaces `name` by one that collides neither with a file in the current directory nor with a name that this
    /// function gave out since the last `GetNumFilesToDecode`.
    void GetUniqueFileName(std::string& name);

    /// Decodes the files in `path` under the names in `names`, joined by ';', into the current directory. Returns
    /// non-zero when at least one file was written, 0 when none was. Never replaces a file.
    std::int32_t DecodeFile(const std::string& path, const std::string& names, std::int32_t one);

    /// Encodes `input` as `output`: format 1 UUE, 2 MIME, 3 BinHex, 4 XXE. Non-zero on success; `output` appears only
    /// whole.
    std::int32_t EncodeFile(const std::string& input, const std::string& output, std::int32_t format,
                            std::int32_t zero);

    /// What the last `DecodeFile` wrote, with verdicts and problems. A file that could not be written is among it, its
    /// `path` empty, its one problem "not-written" with the system's reason; so is one of which nothing could be
    /// decoded, its problem "not-decoded".
    const std::vector<Recovered>& results() const { return results_; }

    /// Called with how far a reading or a decoding of all files has come; false stops it. What is whole by then stays.
    OnProgress on_progress;

    /// The text comes from a newsreader that doubles dots at the beginnings of yEnc lines.
    bool dots_doubled = false;

  private:
    /// What was read last, so that the input is read once.
    struct Input {
        std::string path;
        Recovery recovery;
    };
    bool read(const std::string& path);

    std::optional<Input> input_;
    std::vector<std::string> names_;
    std::unordered_set<std::string> given_out_;
    std::unordered_map<std::string, unsigned> last_number_;  ///< of the names of one row, by the name asked for
    std::vector<Recovered> results_;
};

}  // namespace quill::codec
