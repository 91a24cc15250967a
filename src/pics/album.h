#pragma once

#include "files/mapped_file.h"
#include "pics/format.h"
#include "report/problem.h"
#include "text/result.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quill::pics {

/// A picture in an album.
struct Entry {
    std::string stored_name;                         ///< as in the record; empty if there is none
    std::string name;                                ///< the picture's name in UTF-8, as stored; untrusted
    std::string file_name;                           ///< safe and unique in the album
    std::optional<std::uint64_t> stated_size = {};   ///< nullopt if the record can't be read
    std::uint64_t offset = 0;                        ///< of its first byte in the album
    std::uint64_t size = 0;                          ///< available bytes
    std::optional<std::uint64_t> thumbnail_at = {};  ///< offset of its thumbnail, `thumbnail_size` bytes
    report::Verdict verdict = report::Verdict::whole;
    std::vector<report::Problem> problems = {};
};

/// A readable album: its pictures and their places.
class Album {
  public:
    /// Fails with the system's reason; with `bad_input` if the file is not an album, and with `unsupported` if it has
    /// neither form.
    static Result<Album> open(const std::string& path);

    Form form() const { return form_; }
    const std::vector<Entry>& entries() const { return entries_; }
    /// Returns the problems of the album as a whole; those of grade `repaired` do not affect its pictures.
    const std::vector<report::Problem>& problems() const { return problems_; }
    const files::MappedFile& file() const { return file_; }
    const std::string& path() const { return path_; }

  private:
    explicit Album(files::MappedFile file) : file_(std::move(file)) {}

    files::MappedFile file_;
    std::string path_;
    Form form_ = Form::plain;
    std::vector<Entry> entries_;
    std::vector<report::Problem> problems_;
};

/// The pictures in the bytes of an album, and its problems.
struct Contents {
    Form form = Form::plain;
    std::vector<Entry> entries = {};
    std::vector<report::Problem> problems = {};
};

/// Reads the bytes of an album. Fails like Album::open. Time and memory are proportional to the bytes.
Result<Contents> read_album(std::string_view album);

}  // namespace quill::pics
