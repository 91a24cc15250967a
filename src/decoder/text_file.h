#pragma once

#include "files/mapped_file.h"
#include "text/reader.h"
#include "text/result.h"

#include <string>
#include <string_view>

namespace quill::decoder {

/// A file to read by lines or fields, once or several times. However long it is, little of it is held in memory.
class TextFile {
  public:
    /// Fails as files::MappedFile::open does.
    static Result<TextFile> open(const std::string& path);

    /// Returns a reader at the beginning. The file must outlive it.
    text::Reader reader() const { return text::Reader(source()); }

    /// Returns the source for a reader of the file. The file must outlive it.
    text::Source source() const {
        return {file_.bytes(), unix_text_, [this](std::size_t offset) { file_.release_before(offset); }};
    }

    std::string_view bytes() const { return file_.bytes(); }
    const files::MappedFile& file() const { return file_; }

    /// Releases the memory before the position of `reader`; call it periodically during a long read.
    void release_behind(const text::Reader& reader) const { file_.release_before(reader.offset()); }

  private:
    explicit TextFile(files::MappedFile file);

    files::MappedFile file_;
    bool unix_text_;
};

}  // namespace quill::decoder
