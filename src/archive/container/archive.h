#pragma once

#include "archive/ciphers/encryption.h"
#include "files/mapped_file.h"
#include "report/problem.h"
#include "text/result.h"

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quill::zip {

using report::Grade;
using report::grade_of;
using report::name_of;
using report::Problem;
using report::ProblemKind;
using report::Verdict;

/// One member of an archive, described by its central header, or by its local header if it was recovered from that.
struct Member {
    std::string_view name;      ///< UTF-8, as in the archive: not safe as a path
    std::string_view raw_name;  ///< the bytes in the archive
    std::string_view extra;     ///< its extra fields
    std::uint64_t compressed_size = 0;
    std::uint64_t uncompressed_size = 0;  ///< as stated
    std::uint64_t local_offset = 0;       ///< of its local header in the file
    std::uint64_t header_offset = 0;      ///< of its central header in the file; 0 if it was recovered
    std::uint64_t room = 0;               ///< bytes from its local header to the next one, or to the directory
    std::uint32_t header_size = 0;
    std::uint32_t crc = 0;
    std::uint32_t dos_time = 0;
    std::uint32_t external_attributes = 0;
    std::uint16_t made_by = 0;
    std::uint16_t flags = 0;
    std::uint16_t method = 0;     ///< as stated; for AES see `content_method`
    bool recovered : 1 = false;   ///< found by its local header, without a directory entry
    bool sizes_known : 1 = true;  ///< false: `compressed_size` is only an upper bound, CRC and size are unknown
    bool overlaps : 1 = false;    ///< its bytes begin inside another member or the directory
    bool amended : 1 = false;     ///< its directory entry has an impossible size, and another was found
    bool elsewhere : 1 = false;   ///< it is in another volume of a split archive

    bool is_encrypted() const;
    bool is_aes() const;
    bool is_directory() const;
    bool is_link() const;  ///< Returns true for a symbolic link, whose content is the link's target.
    /// Returns the encryption of the content; nullopt if there is none, or one that can't be written.
    std::optional<archive::Encryption> encryption() const;
    /// Returns the compression method of the content, also of an AES member.
    std::uint16_t content_method() const;
    /// Returns true if the writer's system was a kind of Unix, so that the upper attribute bits are a file mode.
    bool made_on_unix() const;
};

/// The place of an archive's directory.
struct Directory {
    std::uint64_t begin = 0;         ///< of the first central header in the file
    std::uint64_t end = 0;           ///< after the last central header: the first of the end records
    std::uint64_t end_record = 0;    ///< of the end-of-directory record
    std::int64_t shift = 0;          ///< added to stored offsets: bytes of junk before the archive
    std::uint64_t stated_count = 0;  ///< number of members, as stated
    bool wide_count = false;         ///< the count is from a ZIP64 record, else it is modulo 65536
    std::string_view comment;
};

/// A ZIP file opened for reading. Reads as much of a damaged one as can be understood and reports its problems.
class Archive {
  public:
    /// Maps the file and reads its directory. Fails with the system's reason, or with `bad_input` if there is neither a
    /// directory nor a member.
    static Result<Archive> open(const std::string& path);

    /// Reads the archive in `bytes`, which must outlive it.
    static Result<Archive> parse(std::string_view bytes);

    /// Reads again, in `code_page` (a name known to the C library), all names that do not indicate their character set;
    /// an empty one means the page that fits best, as after opening. See `decode_names`.
    void read_names_in(std::string_view code_page);
    /// Returns true if there are such names.
    bool has_names_without_sign() const { return names_without_sign_; }

    const std::vector<Member>& members() const { return members_; }
    const std::vector<Problem>& problems() const { return problems_; }
    std::string_view bytes() const { return bytes_; }
    /// Returns the directory; nullopt if the members were recovered without one.
    const std::optional<Directory>& directory() const { return directory_; }
    /// Returns true if each member has a directory entry that leads to its own header, and no bytes are shared: only
    /// such an archive can be changed.
    bool is_sound() const;
    /// Returns true if the file has been cut since it was opened.
    bool cut_short() const { return file_ && file_->cut_short(); }

  private:
    Archive() = default;
    bool recover(bool directory_is_empty);

    std::optional<files::MappedFile> file_;
    std::string_view bytes_;
    std::optional<Directory> directory_;
    std::vector<Member> members_;
    std::deque<std::string> names_;  // those that are not in the file in this form
    std::vector<Problem> problems_;
    bool directory_whole_ = true;
    bool names_without_sign_ = false;
};

}  // namespace quill::zip
