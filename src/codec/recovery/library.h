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
/// Names of outputs are relative: the files go into the current directory.
class DecodingLibrary {
  public:
    /// Returns how many encoded files the file at `path` contains; 0 if it cannot be read. Remembers the result for
    /// `GetEncodedFile`. Message texts and resource forks do not count.
    std::int32_t GetNumFilesToDecode(const std::string& path);

    /// Puts the output name of file `index`, from 0, into `name`; leaves it unchanged if there is no such file.
    void GetEncodedFile(std::string& name, std::int32_t index) const;

    /// Replaces `name` with one that collides neither with a file in the current directory nor with a name that this
    /// function returned since the last `GetNumFilesToDecode`.
    void GetUniqueFileName(std::string& name);

    /// Decodes the files in `path` under the names in `names`, joined by ';', into the current directory. Returns
    /// non-zero if at least one file was written, 0 if none was. Never replaces a file.
    std::int32_t DecodeFile(const std::string& path, const std::string& names, std::int32_t one);

    /// Encodes `input` as `output`: format 1 UUE, 2 MIME, 3 BinHex, 4 XXE. Returns non-zero on success; `output`
    /// appears only when complete.
    std::int32_t EncodeFile(const std::string& input, const std::string& output, std::int32_t format,
                            std::int32_t zero);

    /// Returns the files that the last `DecodeFile` wrote, with verdicts and problems. Includes files that could not be
    /// written, with an empty `path` and the single problem "not-written" with the system's reason, and files of which
    /// nothing could be decoded, with the problem "not-decoded".
    const std::vector<Recovered>& results() const { return results_; }

    /// Is called with the progress of reading or decoding all files; returns false to stop. Files complete by then
    /// stay.
    OnProgress on_progress;

    /// The text comes from a newsreader that doubles dots at line starts of yEnc.
    bool dots_doubled = false;

  private:
    /// The last input, so that it is read only once.
    struct Input {
        std::string path;
        Recovery recovery;
    };
    bool read(const std::string& path);

    std::optional<Input> input_;
    std::vector<std::string> names_;
    std::unordered_set<std::string> given_out_;
    std::unordered_map<std::string, unsigned> last_number_;  ///< of the names of one series, by requested name
    std::vector<Recovered> results_;
};

}  // namespace quill::codec
